// JsonWriter.h - the output document as one JSON document (schema in docs/output-json.md)
#pragma once

#include <memory>

#include "writers/OutputWriter.h"

/// Builds the whole document in memory and writes it, indented by two, at the end.
class JsonWriter : public OutputWriter {
 public:
  JsonWriter();
  ~JsonWriter() override;

 protected:
  void BeginDocument(std::ostream& out) override;
  void EndDocument(std::ostream& out) override;
  void BeginHeading(const std::string& text, int depth, std::ostream& out) override;
  void EndHeading(int depth, std::ostream& out) override;
  void WriteMessage(int level, const std::string& text, std::ostream& out) override;
  void WriteTable(const TableLayout& layout, std::ostream& out) override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
