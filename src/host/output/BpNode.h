// BpNode.h - the polymorphic base of the output layer's outline nodes
#pragma once

/// Base of headings and groups. Carries nothing but a virtual destructor, so that the
/// procedure may hold any outline node by a base pointer.
class BpNode {
 public:
  virtual ~BpNode() = default;
};
