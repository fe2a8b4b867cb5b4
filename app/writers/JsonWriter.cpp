// JsonWriter.cpp - headings, messages and tables with cells found by their label paths
#include "writers/JsonWriter.h"

#include <nlohmann/json.hpp>
#include <vector>

#include "writers/TableLayout.h"

using nlohmann::json;

namespace {

const char* PlaceName(int place) {
  switch (place) {
    case 0:
      return "row";
    case 1:
      return "column";
    default:
      return "layer";
  }
}

const char* LevelKey(int level) {
  if (level >= 4) return "fatal";
  if (level >= 3) return "error";
  return "warning";
}

json NodeToJson(const DeliveredNode& node) {
  json out;
  out["type"] = node.isCategory ? "category" : "group";
  out["label"] = node.label;
  out["shown"] = node.showLabel;
  if (!node.isCategory) {
    out["children"] = json::array();
    for (const DeliveredNode& child : node.children) out["children"].push_back(NodeToJson(child));
  }
  return out;
}

}  // namespace

struct JsonWriter::Data {
  json document;
  std::vector<json*> open;  // the "items" or "children" arrays being filled, innermost last
};

JsonWriter::JsonWriter() : _data(std::make_unique<Data>()) {}

JsonWriter::~JsonWriter() = default;

void JsonWriter::BeginDocument(std::ostream& /*out*/) {
  _data->document = json::object();
  _data->document["items"] = json::array();
  _data->open.assign(1, &_data->document["items"]);
}

void JsonWriter::EndDocument(std::ostream& out) {
  // A label that is not UTF-8 must not end the run: its bad bytes become U+FFFD.
  out << _data->document.dump(2, ' ', /*ensure_ascii=*/false, json::error_handler_t::replace) << '\n';
}

void JsonWriter::BeginHeading(const std::string& text, int /*depth*/, std::ostream& /*out*/) {
  json heading;
  heading["type"] = "heading";
  heading["text"] = text;
  heading["children"] = json::array();
  _data->open.back()->push_back(std::move(heading));
  _data->open.push_back(&_data->open.back()->back()["children"]);
}

void JsonWriter::EndHeading(int /*depth*/, std::ostream& /*out*/) {
  _data->open.pop_back();
}

void JsonWriter::WriteMessage(int level, const std::string& text, std::ostream& /*out*/) {
  json message;
  message["type"] = "message";
  message["level"] = LevelKey(level);
  message["text"] = text;
  _data->open.back()->push_back(std::move(message));
}

void JsonWriter::WriteTable(const TableLayout& layout, std::ostream& /*out*/) {
  const DeliveredTable& table = layout.GetTable();
  json out;
  out["type"] = "table";
  out["title"] = table.title;
  out["titleHidden"] = table.titleHidden;
  out["subtype"] = table.subtype;
  out["mergedTitle"] = table.mergedTitle;
  out["caption"] = table.caption;
  out["captionNotes"] = table.captionNoteMarks;
  out["corner"] = table.corner;
  out["tableNotes"] = table.tableNoteMarks;
  out["notes"] = json::array();
  for (const DeliveredNote& note : table.notes)
    out["notes"].push_back({{"mark", note.mark}, {"text", note.text}});
  out["minDataColumnWidth"] = table.minDataColumnWidth;
  out["maxDataColumnWidth"] = table.maxDataColumnWidth;
  out["dimensions"] = json::array();
  for (const DeliveredDimension& dimension : table.dimensions) {
    json item;
    item["name"] = dimension.name;
    item["place"] = PlaceName(dimension.place);
    item["order"] = dimension.order;
    item["hideName"] = dimension.hideName;
    item["hideLabels"] = dimension.hideLabels;
    item["tree"] = json::array();
    for (const DeliveredNode& child : dimension.root.children) item["tree"].push_back(NodeToJson(child));
    out["dimensions"].push_back(std::move(item));
  }
  out["cells"] = json::array();
  const auto& layers = layout.GetLayers();
  const auto& rows = layout.GetRows().entries;
  const auto& columns = layout.GetColumns().entries;
  for (std::size_t layerIndex = 0; layerIndex < layers.size(); ++layerIndex) {
    for (std::size_t rowIndex = 0; rowIndex < rows.size(); ++rowIndex) {
      for (std::size_t columnIndex = 0; columnIndex < columns.size(); ++columnIndex) {
        const LayoutCell& cell = layout.GetCell(static_cast<int>(layerIndex), static_cast<int>(rowIndex),
                                                static_cast<int>(columnIndex));
        if (!cell.present) continue;
        json item;
        item["row"] = rows[rowIndex].labelPath;
        item["column"] = columns[columnIndex].labelPath;
        item["layer"] = layers[layerIndex].labelPath;
        item["text"] = cell.text;
        if (cell.hasNumber) item["number"] = cell.number;
        item["markers"] = cell.markers;
        item["notes"] = cell.noteMarks;
        out["cells"].push_back(std::move(item));
      }
    }
  }
  _data->open.back()->push_back(std::move(out));
}
