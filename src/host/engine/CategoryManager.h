// CategoryManager.h - merges the category lists of variables that share a header place
#pragma once

#include <memory>
#include <vector>

class AggregationCategory;
class AggregationVariable;
class TableDimension;

/// Merges category lists: a category joins when no category with the same type, value
/// and label is in the list yet, keeping first-seen order.
class CategoryManager {
 public:
  CategoryManager(const std::vector<AggregationCategory*>& categories, AggregationVariable* variable,
                  TableDimension* dimension);
  ~CategoryManager();
  void AddCategories(const std::vector<AggregationCategory*>& categories);
  const std::vector<AggregationCategory*>& GetCategories() const;
  bool GetIncludeEmpty() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
