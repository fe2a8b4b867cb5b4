// SubcommandTestSupport.cpp - the data set behind the subcommand tests
#include "SubcommandTestSupport.h"

#include <memory>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"

namespace {

const char* const kCsv =
    "a,b,c,s,w,d1,d2\n"
    "1,2,3,x,1.5,1,0\n";

const char* const kDictionary = R"({
  "variables": [{"name": "s", "type": "string"}],
  "mrsets": [{"name": "$dich", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]}]
})";

}  // namespace

void AttachTestDataSource(SyntaxConverter& anyConverter) {
  static std::shared_ptr<const Dataset> dataset =
      DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
  static ProcedureDataSource dataSource(dataset);
  anyConverter.SetDataSource(&dataSource);
}
