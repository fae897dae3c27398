// Registers the host's OpenCASCADE kernel for tests that work on solids without an editor.
#include "SolidKernel.h"

#include "solid/OcctModeler.h"

void UseSolidKernel() {
    acdbSetSolidModeler(&GetOcctModeler());
}
