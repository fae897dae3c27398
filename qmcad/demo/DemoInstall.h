// A generated demo installation: the two libraries with categories and items, and its settings.
#pragma once

#include "suite/SuiteConfig.h"

#include <string>

// Lays out common resources, local install and install root under the OS
// directory, keeps what already exists there, and fills the suite settings.
// The items are real drawings: the file codec must be registered.
bool MakeDemoInstall(const std::string& osDir, CSuiteConfig& config);

// One line per library: where it lies and how many items it holds.
void PrintDemoSummary(CSuiteConfig& config);
