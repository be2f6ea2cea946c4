#include "driver/entry.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "driver/path_search.h"
#include "driver/usage.h"

namespace tarnfold::zmf {

namespace {

// The check for a console that understands colour: this platform always
// does, so the switch stands as given.
bool consoleSupportsColor() { return true; }

}  // namespace

int zmfiMain(int argc, char** argv) {
    // A command-pipe program that dies must not take zmfi with it, and
    // children are never reaped by a handler.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_IGN);
    std::setlocale(LC_CTYPE, "");
    printVersion();

    if (const char* path = std::getenv("TF_PATH")) queryPathList = splitPath(path, ';');

    ZMFDriverOptions options;
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);

    std::string error;
    if (!parseCommandLine(arguments, options, error)) {
        std::cout << error << "\n" << std::flush;
        return 1;
    }
    if (options.ansiColors) options.ansiColors = consoleSupportsColor();

    if (options.showHelp) {
        printUsage();
        std::cout << "\n";
    }
    if (options.showLicense) {
        printLicense();
        std::cout << "\n" << std::flush;
        return 0;
    }
    if (options.showHelp || options.showVersion) {
        std::cout << std::flush;
        return 0;
    }
    // Not reachable from the command line, which falls back to the query
    // "true", but a caller that empties the source must not run nothing.
    if (options.querySource.text().empty()) {
        std::cout << "Not input ZMF query provided\n" << std::flush;
        return 1;
    }
    return runQuery(options) ? 0 : 1;
}

}  // namespace tarnfold::zmf
