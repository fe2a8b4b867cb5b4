// quilt.h - the procedure's one entry point, called by the host once per command
#pragma once

/// Runs one whole command: parses the tokens behind `tokens` (the host's opaque handle),
/// makes one pass over the active data set and delivers the tables to the output layer.
/// Everything the user sees goes through BpError and BpProcedure; nothing is returned.
extern "C" void quilt_(void* tokens);
