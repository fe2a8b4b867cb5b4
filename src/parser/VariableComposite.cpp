// VariableComposite.cpp - dissecting a table expression into sub-table cubes by nesting, crossing and stacking
#include "parser/VariableComposite.h"

#include <algorithm>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxVariableName.h"

struct VariableComposite::Data {
  std::vector<SubTableCube*> _cubes;       // the composite's cubes in order; not all owned
  std::vector<SubTableCube*> _ownedCubes;  // those made here, deleted with the composite

  /// Makes a cube of `var`, owned here, and appends it to the list.
  SubTableCube* AddOwnCube(SyntaxVariableName* var) {
    auto* cube = new SubTableCube(var);
    _ownedCubes.push_back(cube);
    _cubes.push_back(cube);
    return cube;
  }

  /// Appends the cubes of a child; the child keeps owning them.
  void TakeOver(const VariableComposite& child) {
    const std::vector<SubTableCube*>& cubes = child._compositeData->_cubes;
    _cubes.insert(_cubes.end(), cubes.begin(), cubes.end());
  }
};

namespace {

constexpr int kNoStatistics = SubTableCube::kCubeStatNone;

bool IsVariable(const SyntaxConverter* node) {
  const int type = node->GetType();
  return type == kConverterVariable || type == kConverterMRSet;
}

SyntaxVariableName* AsVariable(SyntaxConverter* node) {
  return static_cast<SyntaxVariableName*>(node);
}

bool IsScale(const SyntaxVariableName* var) {
  return var->GetVariableType() == TableEncryptionCodes::kVariableScale;
}

bool IsCategorical(const SyntaxVariableName* var) {
  return var->GetVariableType() == TableEncryptionCodes::kVariableCategorical;
}

// The cube list of an operand that is not a variable. Every composite operand of the
// expression mixes in VariableComposite; anything else here is a fault of the tree.
VariableComposite& AsComposite(SyntaxConverter* node) {
  auto* composite = dynamic_cast<VariableComposite*>(node);
  QUILT_ASSERT(composite != nullptr, "an operand of the table expression is a variable or a composite");
  return *composite;
}

}  // namespace

VariableComposite::VariableComposite() : _compositeData(new Data) {}

VariableComposite::~VariableComposite() {
  for (SubTableCube* cube : _compositeData->_ownedCubes) {
    delete cube;
  }
  delete _compositeData;
}

SubTableCube* VariableComposite::operator[](int position) const {
  QUILT_ASSERT(position >= 0 && position < CubeCount(), "cube position within the composite");
  return _compositeData->_cubes[static_cast<size_t>(position)];
}

int VariableComposite::CubeCount() const {
  return static_cast<int>(_compositeData->_cubes.size());
}

SubTableCube*& VariableComposite::operator[](int position) {
  QUILT_ASSERT(position >= 0 && position < CubeCount(), "cube position within the composite");
  return _compositeData->_cubes[static_cast<size_t>(position)];
}

void VariableComposite::ImitateChildComposite(SyntaxConverter* child) {
  if (IsVariable(child)) {
    _compositeData->AddOwnCube(AsVariable(child));
    return;
  }
  // The placeholder of an empty axis stands for nothing.
  if (child->GetType() == kConverterDummy) {
    return;
  }
  _compositeData->TakeOver(AsComposite(child));
}

void VariableComposite::NestChildren(std::vector<SyntaxConverter*>* children, bool cross) {
  QUILT_ASSERT(children->size() == 2, "nesting and crossing combine exactly two operands");
  Data& data = *_compositeData;
  const auto type = cross ? SubTableCube::kAlgebraBy : SubTableCube::kAlgebraNest;
  SyntaxConverter* first = (*children)[0];
  SyntaxConverter* second = (*children)[1];
  if (IsVariable(first)) {
    data.AddOwnCube(AsVariable(first));
  } else {
    data.TakeOver(AsComposite(first));
  }
  if (IsVariable(second)) {
    for (SubTableCube* cube : data._cubes) {
      cube->AddVariable(AsVariable(second), type);
    }
    return;
  }
  // Every cube of the first operand meets every cube of the second, the first outermost,
  // so the sub-tables come in the order a reader of the expression expects.
  const VariableComposite& inner = AsComposite(second);
  std::vector<SubTableCube*> combined;
  for (SubTableCube* outer : data._cubes) {
    for (SubTableCube* innerCube : inner._compositeData->_cubes) {
      auto* cube = new SubTableCube(outer);
      data._ownedCubes.push_back(cube);
      cube->AddCube(innerCube, type);
      combined.push_back(cube);
    }
  }
  data._cubes = combined;
}

void VariableComposite::StackChildren(std::vector<SyntaxConverter*>* children) {
  QUILT_ASSERT(children->size() == 2, "stacking combines exactly two operands");
  SyntaxConverter* first = (*children)[0];
  SyntaxConverter* second = (*children)[1];
  if (IsVariable(first) && IsVariable(second)) {
    StackVariables(AsVariable(first), AsVariable(second));
  } else if (IsVariable(second)) {
    StackCompositeAndVariable(AsComposite(first), AsVariable(second));
  } else if (IsVariable(first)) {
    StackVariableAndComposite(AsVariable(first), AsComposite(second));
  } else {
    StackComposites(AsComposite(first), AsComposite(second));
  }
}

// variable + variable
void VariableComposite::StackVariables(SyntaxVariableName* a, SyntaxVariableName* b) {
  Data& data = *_compositeData;
  const auto stack = SubTableCube::kAlgebraStack;
  if (IsScale(a) && IsScale(b)) {
    // Two summaries share one cube: they are cells of the same categories.
    data.AddOwnCube(a)->AddVariable(b, stack);
    return;
  }
  if (IsScale(a) && IsCategorical(b)) {
    b->SetDefaultStats();
  } else if (IsCategorical(a) && IsScale(b)) {
    a->SetDefaultStats();
  } else if (IsCategorical(a) && IsCategorical(b)) {
    if (a->HasStatistics()) {
      b->SetDefaultStats();
    }
    if (b->HasStatistics()) {
      a->SetDefaultStats();
    }
  }
  data.AddOwnCube(a);
  data.AddOwnCube(b);
}

// (composite) + variable
void VariableComposite::StackCompositeAndVariable(VariableComposite& c, SyntaxVariableName* v) {
  Data& data = *_compositeData;
  const auto stack = SubTableCube::kAlgebraStack;
  if (IsScale(v)) {
    c.SetDefaultStats();
    data.TakeOver(c);
    SubTableCube* last = data._cubes.empty() ? nullptr : data._cubes.back();
    if (last != nullptr && last->GetCatVarCount() == 0) {
      last->AddVariable(v, stack);
    } else {
      data.AddOwnCube(v);
    }
    return;
  }
  if (v->HasStatistics()) {
    c.SetDefaultStats();
  }
  if (c.GetFirstStatType() != kNoStatistics) {
    v->SetDefaultStats();
  }
  data.TakeOver(c);
  data.AddOwnCube(v);
}

// variable + (composite)
void VariableComposite::StackVariableAndComposite(SyntaxVariableName* v, VariableComposite& c) {
  Data& data = *_compositeData;
  const auto stack = SubTableCube::kAlgebraStack;
  if (IsScale(v)) {
    c.SetDefaultStats();
    SubTableCube* head = c.CubeCount() > 0 ? c[0] : nullptr;
    if (head != nullptr && head->GetCatVarCount() == 0) {
      // The summaries merge into the composite's first cube, with v standing first in it.
      data.TakeOver(c);
      std::vector<SyntaxVariableName*> scales;
      for (int index = 0; index < head->GetStatVarCount(); ++index) {
        scales.push_back(head->GetStatVar(index));
      }
      head->Reset();
      head->AddVariable(v, stack);
      for (SyntaxVariableName* scale : scales) {
        head->AddVariable(scale, stack);
      }
    } else {
      data.AddOwnCube(v);
      data.TakeOver(c);
    }
    return;
  }
  if (v->HasStatistics()) {
    c.SetDefaultStats();
  }
  if (c.GetFirstStatType() != kNoStatistics) {
    v->SetDefaultStats();
  }
  data.AddOwnCube(v);
  data.TakeOver(c);
}

// (composite) + (composite)
void VariableComposite::StackComposites(VariableComposite& c1, VariableComposite& c2) {
  Data& data = *_compositeData;
  const auto stack = SubTableCube::kAlgebraStack;
  SubTableCube* last = c1.CubeCount() > 0 ? c1[c1.CubeCount() - 1] : nullptr;
  SubTableCube* head = c2.CubeCount() > 0 ? c2[0] : nullptr;
  if (last != nullptr && head != nullptr && last->GetCatVarCount() == 0 && head->GetCatVarCount() == 0) {
    // Summaries meeting at the seam of the stack merge into one cube.
    data.TakeOver(c1);
    for (int pos = 0; pos < head->GetVarCount(); ++pos) {
      last->AddVariable((*head)[pos], stack);
    }
    const std::vector<SubTableCube*>& rest = c2._compositeData->_cubes;
    data._cubes.insert(data._cubes.end(), rest.begin() + 1, rest.end());
    return;
  }
  if (c1.GetFirstStatType() != kNoStatistics) {
    c2.SetDefaultStats();
  }
  if (c2.GetFirstStatType() != kNoStatistics) {
    c1.SetDefaultStats();
  }
  data.TakeOver(c1);
  data.TakeOver(c2);
}

int VariableComposite::GetFirstStatType() const {
  for (const SubTableCube* cube : _compositeData->_cubes) {
    const int type = cube->GetCubeStatType();
    if (type != kNoStatistics) {
      return type;
    }
  }
  return kNoStatistics;
}

void VariableComposite::SetDefaultStats() {
  for (SubTableCube* cube : _compositeData->_cubes) {
    cube->SetDefaultStats();
  }
}

std::vector<std::string> VariableComposite::GetCatVarNameList() const {
  std::vector<std::string> names;
  for (const SubTableCube* cube : _compositeData->_cubes) {
    for (const std::string& name : cube->GetCatVarNameList()) {
      SyntaxParserUtility::AppendDistinctName(names, name);
    }
  }
  return names;
}

namespace {

void AppendDistinct(std::vector<SyntaxVariableName*>& into, const std::vector<SyntaxVariableName*>& from) {
  for (SyntaxVariableName* var : from) {
    if (std::find(into.begin(), into.end(), var) == into.end()) {
      into.push_back(var);
    }
  }
}

}  // namespace

std::vector<SyntaxVariableName*> VariableComposite::GetCategoricalVariables(const std::string& name) const {
  std::vector<SyntaxVariableName*> found;
  for (const SubTableCube* cube : _compositeData->_cubes) {
    AppendDistinct(found, cube->GetCategoricalVariables(name));
  }
  return found;
}

std::vector<SyntaxVariableName*> VariableComposite::GetScaleVariables(const std::string& name) const {
  std::vector<SyntaxVariableName*> found;
  for (const SubTableCube* cube : _compositeData->_cubes) {
    AppendDistinct(found, cube->GetScaleVariables(name));
  }
  return found;
}

bool VariableComposite::CatVarNameExist(const std::string& name) const {
  const std::vector<SubTableCube*>& cubes = _compositeData->_cubes;
  return std::any_of(cubes.begin(), cubes.end(), [&](const SubTableCube* cube) { return cube->CatVarNameExist(name); });
}

bool VariableComposite::ScaleVarNameExist(const std::string& name) const {
  const std::vector<SubTableCube*>& cubes = _compositeData->_cubes;
  return std::any_of(cubes.begin(), cubes.end(),
                     [&](const SubTableCube* cube) { return cube->ScaleVarNameExist(name); });
}

void VariableComposite::PrintCubes(std::ostream& out, int indent) const {
  const std::string pad(static_cast<size_t>(indent), ' ');
  const std::vector<SubTableCube*>& cubes = _compositeData->_cubes;
  for (size_t index = 0; index < cubes.size(); ++index) {
    out << pad << "cube " << index + 1 << "\n";
    cubes[index]->Print(out, indent + 2);
  }
}
