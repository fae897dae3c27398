// The DWG to DXF converter process: started once, reused, restarted after a failure or time-out.
#pragma once

#include <memory>
#include <string>

class QProcess;

class CDwgWorker {
public:
    struct OPTIONS {
        std::string strNode = "node"; // the JavaScript runtime
        std::string strScript;        // the converter script (dwgconv.mjs)
        int nTimeoutMs = 30000;       // one conversion, and the start
    };
    enum class RESULT {
        Ok,
        Failed,    // the converter refused the file
        TimedOut,  // killed at the time-out
        NoRuntime, // the runtime cannot be started
        NoPackage, // the runtime runs but the converter package is not installed
    };

    explicit CDwgWorker(OPTIONS opt);
    ~CDwgWorker();
    CDwgWorker(const CDwgWorker&) = delete;
    CDwgWorker& operator=(const CDwgWorker&) = delete;

    // Converts the DWG at strIn (an OS path) into a DXF file at strOut.
    // strError says why on anything but Ok.
    RESULT Convert(const std::string& strIn, const std::string& strOut, std::string& strError);
    // Processes started so far; a reused worker keeps this at one.
    int Starts() const { return m_nStarts; }
    bool IsRunning() const;
    // Starts the process now (Convert starts it when needed); strError says why not.
    RESULT Start(std::string& strError);
    void Stop();
    const OPTIONS& Options() const { return m_opt; }

private:
    bool ReadLine(std::string& strLine, int nTimeoutMs);

    OPTIONS m_opt;
    std::unique_ptr<QProcess> m_pProc;
    int m_nStarts = 0;
};

// The options from the environment: QM_NODE (runtime), QM_DWG_WORKER (script),
// QM_DWG_TIMEOUT (seconds), else the defaults with the script installed beside the host.
CDwgWorker::OPTIONS DwgWorkerOptionsFromEnv();
