// QuiltModule.cpp - the extension module quilt._quilt: one run function and read-only result records
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "ModuleRun.h"
#include "QuiltProgram.h"
#include "host/data/DataError.h"

namespace py = pybind11;

PYBIND11_MODULE(_quilt, module) {
  module.doc() = "The engine under the quilt package; use quilt.run.";
  py::register_exception<DataError>(module, "DataError", PyExc_ValueError);

  py::class_<ModuleCell>(module, "Cell")
      .def_readonly("layer", &ModuleCell::layer)
      .def_readonly("row", &ModuleCell::row)
      .def_readonly("column", &ModuleCell::column)
      .def_readonly("text", &ModuleCell::text)
      .def_readonly("has_number", &ModuleCell::hasNumber)
      .def_readonly("number", &ModuleCell::number)
      .def_readonly("markers", &ModuleCell::markers)
      .def_readonly("notes", &ModuleCell::notes);
  py::class_<ModuleTable>(module, "DeliveredTable")
      .def_readonly("command", &ModuleTable::command)
      .def_readonly("headings", &ModuleTable::headings)
      .def_readonly("title", &ModuleTable::title)
      .def_readonly("subtype", &ModuleTable::subtype)
      .def_readonly("merged_title", &ModuleTable::mergedTitle)
      .def_readonly("caption", &ModuleTable::caption)
      .def_readonly("corner", &ModuleTable::corner)
      .def_readonly("title_notes", &ModuleTable::titleNotes)
      .def_readonly("caption_notes", &ModuleTable::captionNotes)
      .def_readonly("notes", &ModuleTable::notes)
      .def_readonly("rows", &ModuleTable::rows)
      .def_readonly("columns", &ModuleTable::columns)
      .def_readonly("layers", &ModuleTable::layers)
      .def_readonly("row_levels", &ModuleTable::rowLevels)
      .def_readonly("column_levels", &ModuleTable::columnLevels)
      .def_readonly("cells", &ModuleTable::cells)
      .def_readonly("html", &ModuleTable::html)
      .def_readonly("text", &ModuleTable::text);
  py::class_<ModuleMessage>(module, "Message")
      .def_readonly("command", &ModuleMessage::command)
      .def_readonly("level", &ModuleMessage::level)
      .def_readonly("text", &ModuleMessage::text)
      .def_readonly("headings", &ModuleMessage::headings)
      .def_readonly("place", &ModuleMessage::place);
  py::class_<ModuleRunResult>(module, "RunResult")
      .def_readonly("tables", &ModuleRunResult::tables)
      .def_readonly("messages", &ModuleRunResult::messages)
      .def_readonly("command_places", &ModuleRunResult::commandPlaces);

  // Texts arrive as UTF-8 str or as bytes (file names from os.fsencode, CSV text).
  module.def(
      "run",
      [](const std::string& commands, const std::string& origin, const std::string& csvPath,
         const std::string& csvText, const std::string& csvName, const std::string& dictionaryPath,
         const std::string& dictionaryJson, const std::string& weight,
         const std::vector<std::string>& split) {
        ModuleRunOptions options{commands,       origin,         csvPath, csvText, csvName,
                                 dictionaryPath, dictionaryJson, weight,  split};
        return ModuleRun::Run(options);
      },
      py::arg("commands"), py::arg("origin"), py::arg("csv_path"), py::arg("csv_text"), py::arg("csv_name"),
      py::arg("dictionary_path"), py::arg("dictionary_json"), py::arg("weight"), py::arg("split"));
  module.def("default_data_path", &QuiltProgram::DefaultDataPath,
             "The bundled sample survey, as the quilt program finds it.");
}
