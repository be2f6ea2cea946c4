#include "driver/entry.h"

int main(int argc, char** argv) { return tarnfold::zmf::zmfiMain(argc, argv); }
