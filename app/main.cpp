// main.cpp - the quilt program: reads the command line, runs the commands, sets the exit status
#include "QuiltProgram.h"

int main(int argc, char** argv) { return QuiltProgram::Main(argc, argv); }
