#include "control/tessellarctl.h"

int main(int argc, char** argv) { return tessellar::tessellarctl(argc, argv); }
