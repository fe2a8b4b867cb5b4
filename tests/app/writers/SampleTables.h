// SampleTables.h - hand-assembled output documents that the writer tests share
#pragma once

#include <string>

class OutputDocument;

/// Fills `document` with a procedure heading holding: a warning; a table with nested
/// columns (gender > statistics), a hidden row group, two layers, markers, a cell note, a
/// table note, caption and corner text, and a category that never gets a cell; a destroyed
/// table; and a table titled by a composite. Every number is written with its format family.
void BuildSampleDocument(OutputDocument& document);

/// A document with one table of `columnCount` columns, wide enough to need panels.
void BuildWideDocument(OutputDocument& document, int columnCount);

/// A document with a table whose title the outline carries and that has no cell at all, and a
/// table of six narrow columns under four nested row levels with long labels.
void BuildEmptyAndDeepDocument(OutputDocument& document);
