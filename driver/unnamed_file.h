#pragma once
// An unnamed file in a given folder, which can later take the place of a
// file there: the games are written once, beside the output file, and a
// rename makes them the output at the end of the run. A run that fails, or
// is killed, leaves nothing behind: the file has no name until then.

#include <cstdio>
#include <string>

namespace tarnfold::zmf {

// Read and write; null when the folder cannot hold one (it is not writable,
// or its file system has no unnamed files).
std::FILE* unnamedFileIn(const std::string& folder);

// Gives the unnamed file behind fd the name path, in place of what is there.
// Only a path that does not exist, or a plain file of this user's that may be
// written and has no other names, is replaced; the file keeps that file's
// mode. False when it cannot: path is then as it was.
bool replaceFile(int fd, const std::string& path);

}  // namespace tarnfold::zmf
