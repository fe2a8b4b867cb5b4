// CategoryManager.cpp - merges the category lists of variables that share a header place
#include "host/engine/CategoryManager.h"

#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/TableDimension.h"

struct CategoryManager::Data {
  std::vector<AggregationCategory*> _categories;
  bool _includeEmpty = true;
};

CategoryManager::CategoryManager(const std::vector<AggregationCategory*>& categories,
                                 AggregationVariable* variable, TableDimension* dimension)
    : _data(std::make_unique<Data>()) {
  _data->_categories = categories;
  if (dimension != nullptr) {
    _data->_includeEmpty = dimension->GetIncludeEmpty();
  } else if (variable != nullptr) {
    _data->_includeEmpty = variable->GetIsEmptyInclude();
  }
}

CategoryManager::~CategoryManager() = default;

void CategoryManager::AddCategories(const std::vector<AggregationCategory*>& categories) {
  for (AggregationCategory* candidate : categories) {
    bool present = false;
    for (const AggregationCategory* own : _data->_categories) {
      present = present || own->IsSameAs(*candidate);
    }
    if (!present) _data->_categories.push_back(candidate);
  }
}

const std::vector<AggregationCategory*>& CategoryManager::GetCategories() const {
  return _data->_categories;
}

bool CategoryManager::GetIncludeEmpty() const {
  return _data->_includeEmpty;
}
