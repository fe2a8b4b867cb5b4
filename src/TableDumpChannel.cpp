// TableDumpChannel.cpp - the one installed dump stream of a run
#include "TableDumpChannel.h"

namespace {
std::ostream* installedStream = nullptr;
}

void TableDumpChannel::Install(std::ostream* stream) { installedStream = stream; }

std::ostream* TableDumpChannel::Get() { return installedStream; }
