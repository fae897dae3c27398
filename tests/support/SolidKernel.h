// The host's OpenCASCADE kernel for tests of module code that makes and measures solids.
#pragma once

// Registers the kernel with the drawing database; harmless to call again.
void UseSolidKernel();
