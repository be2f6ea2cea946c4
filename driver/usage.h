#pragma once
// The fixed texts of the program: version line, usage, licence.

#include <string>

namespace tarnfold::zmf {

std::string versionText();
std::string usageText();
std::string licenseText();

// Each prints its text on standard output and flushes.
void printVersion();
void printUsage();
void printLicense();

}  // namespace tarnfold::zmf
