// The editor's result and value-type codes, shared by system variables, prompts and result buffers.
#pragma once

enum : int {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002,
    RTSHORT = 5003,
    RTANG = 5004,
    RTSTR = 5005,
    RTENAME = 5006,
    RTPICKS = 5007,
    RT3DPOINT = 5009,
    RTLONG = 5010,
    RTNORM = 5100,
    RTERROR = -5001,
    RTCAN = -5002,
    RTREJ = -5003,
};
