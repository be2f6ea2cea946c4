#pragma once
// Finding query and input files along the directories of TF_PATH.

#include <string>
#include <string_view>
#include <vector>

namespace tarnfold::zmf {

// The directories of TF_PATH, filled once by main before anything reads it.
extern std::vector<std::string> queryPathList;

// Empty pieces are kept: "a;;b" gives three.
std::vector<std::string> splitPath(std::string_view text, char separator);

bool fileExists(const std::string& name);

// An absolute name as it is; then the current directory; then each directory
// of the list in order; and when nothing exists, the name as it is, so that
// the caller's open reports the reason.
std::string resolveFile(const std::string& name, const std::vector<std::string>& pathList);

// The whole text of a query file. On failure prints
// "Failed to open ZMF file 'NAME': REASON" and gives an empty text; an empty
// file also gives an empty text, with no message.
std::string readQueryFile(const std::string& name);

// Last path component without its extension: "dir/q.v2.zmf" gives "q.v2".
std::string fileStem(std::string_view name);

}  // namespace tarnfold::zmf
