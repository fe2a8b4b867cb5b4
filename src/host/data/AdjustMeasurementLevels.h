// AdjustMeasurementLevels.h - settles unknown measurement levels from the data before parsing
#pragma once

class ProcedureDataSource;

/// Gives every variable of unknown level a level from the data: a string is nominal; a
/// numeric variable is nominal when it has value labels, or when all its valid values are
/// integers with at most kMaximumNominalDistinctValues distinct ones; any other numeric
/// variable is scale. Changes only the data source's copy of the dictionary.
void AdjustMeasurementLevels(ProcedureDataSource& dataSource);

/// Largest number of distinct integer values a numeric variable without value labels may
/// have and still count as nominal.
inline constexpr int kMaximumNominalDistinctValues = 24;
