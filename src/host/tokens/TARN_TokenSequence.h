// TARN_TokenSequence.h - the token sequence the procedure walks, over one lexed command
#pragma once

#include "host/tokens/TokenSequenceBase.h"

struct LexedCommand;

/// Walks the tokens of a LexedCommand. Before the first Next there is no current token;
/// after the last, Next keeps answering false and the current token reads as the end mark.
class TARN_TokenSequence : public TokenSequenceBase {
public:
  /// `handle` is the host's opaque handle: a LexedCommand*, not owned, which must outlive
  /// the sequence. The flag is part of the host's signature and is always true.
  TARN_TokenSequence(void* handle, bool flag);

  bool Next() override;
  int PositionBefore() override;
  void SetPosition(int position) override;
  int Prepare() override;
  TokenType GetTokenType() override;
  OperatorCode GetOperatorCode() override;
  void GetText(char** text, int* length) override;
  double GetNumber() override;

private:
  bool HasCurrent() const;

  LexedCommand* _command;
  int _position = -1;  // index of the current token; -1 before the first Next
};
