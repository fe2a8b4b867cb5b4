// SyntaxComposite.h - a parse node that owns an ordered list of child nodes
#pragma once

#include <vector>

#include "parser/SyntaxConverter.h"

/// A converter with children: the table, the operators, parens, brackets, the command root
/// and most subcommands. Children are owned and deleted in order with the composite.
/// A composite stops the precedence climb: it never binds tighter than an operator.
class SyntaxComposite : public SyntaxConverter {
 public:
  SyntaxComposite();
  ~SyntaxComposite() override;

  int GetType() const override;
  /// Makes this the child's parent and appends it; returns this.
  SyntaxConverter* Add(SyntaxConverter* child) override;
  void DissectTableInCubes() override;
  void SetIsLeafNode(bool isLeaf) override;
  std::vector<SyntaxConverter*>& Children() override;
  bool IsLessInert(const SyntaxConverter* op) const override;

  /// Appends `child` without touching its parent. Takes ownership.
  virtual void AddChild(SyntaxConverter* child);

  /// The children in order, for readers of the finished tree.
  const std::vector<SyntaxConverter*>& GetChildren() const { return _children; }

 private:
  std::vector<SyntaxConverter*> _children;  // owned, in order of arrival
};
