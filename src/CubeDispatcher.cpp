// CubeDispatcher.cpp - declares one table to the aggregation engine and delivers it per group
#include "CubeDispatcher.h"

#include "host/QuiltAssert.h"

// The engine's table, the table builder's QuiltTable and the variable objects join this
// record with the table builder (TODO(#7)); until then a dispatcher holds its table only,
// and a parsed table is declared to nothing and delivered as nothing.
struct CubeDispatcher::Data {
  SyntaxTableSubcommand* _table = nullptr;  // the table served; not owned
};

CubeDispatcher::CubeDispatcher(SyntaxTableSubcommand* table) : _data(new Data) {
  QUILT_ASSERT(table != nullptr, "a dispatcher serves a parsed table");
  _data->_table = table;
}

CubeDispatcher::~CubeDispatcher() { delete _data; }

int CubeDispatcher::CreateCubes(ProcDSIterator& /*iterator*/) { return 0; }

void CubeDispatcher::Aggregate() {}

void CubeDispatcher::Finalize() {}

void CubeDispatcher::Reset() {}

void CubeDispatcher::ClearDeep() {}

void CubeDispatcher::BuildTable(BpProcedure* /*procedure*/, ProcedureDataSource* /*dataSource*/, int /*tableNumber*/,
                                bool /*controlPackageMode*/, const std::string& /*splitText*/) {}

void CubeDispatcher::PrintDataDbg() {}
