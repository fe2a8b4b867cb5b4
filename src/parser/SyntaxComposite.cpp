// SyntaxComposite.cpp - ownership and ordering of child nodes
#include "parser/SyntaxComposite.h"

#include "parser/SyntaxConverterType.h"

SyntaxComposite::SyntaxComposite() = default;

SyntaxComposite::~SyntaxComposite() {
  for (SyntaxConverter* child : _children) {
    delete child;
  }
}

int SyntaxComposite::GetType() const {
  return kConverterComposite;
}

SyntaxConverter* SyntaxComposite::Add(SyntaxConverter* child) {
  child->SetParent(this);
  AddChild(child);
  return this;
}

void SyntaxComposite::DissectTableInCubes() {
  for (SyntaxConverter* child : _children) {
    child->DissectTableInCubes();
  }
}

void SyntaxComposite::SetIsLeafNode(bool isLeaf) {
  for (SyntaxConverter* child : _children) {
    child->SetIsLeafNode(isLeaf);
  }
}

std::vector<SyntaxConverter*>& SyntaxComposite::Children() {
  return _children;
}

bool SyntaxComposite::IsLessInert(const SyntaxConverter* /*op*/) const {
  return false;
}

void SyntaxComposite::AddChild(SyntaxConverter* child) {
  _children.push_back(child);
}
