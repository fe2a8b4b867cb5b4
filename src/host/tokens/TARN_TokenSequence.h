// TARN_TokenSequence.h - the token sequence the procedure walks, over one lexed command
#pragma once

#include <memory>

#include "host/tokens/TokenSequenceBase.h"

struct LexedCommand;

/// Walks the tokens of a LexedCommand. Before the first Next there is no current token;
/// after the last, Next keeps answering false and the current token reads as the end mark
/// (kTokenEnd, kOpNone, empty text, number 0). Positions are token indexes: the position of
/// a token is one less than its index, so SetPosition(PositionBefore()) steps back exactly
/// one token.
class TARN_TokenSequence : public TokenSequenceBase {
 public:
  /// `handle` is the host's opaque handle: a LexedCommand*, not owned, which must outlive
  /// the sequence. The flag is part of the host's signature; the program always passes true
  /// and the sequence does not depend on it.
  TARN_TokenSequence(void* handle, bool flag);
  ~TARN_TokenSequence() override;
  TARN_TokenSequence(const TARN_TokenSequence&) = delete;
  TARN_TokenSequence& operator=(const TARN_TokenSequence&) = delete;

  bool Next() override;
  /// Before the first Next this is the start again, so the following Next gives the first
  /// token.
  int PositionBefore() override;
  /// `position` must lie between the start (-1) and the end mark (the token count); any
  /// other value is a programming error.
  void SetPosition(int position) override;
  /// Returns the number of tokens.
  int Prepare() override;
  TokenType GetTokenType() override;
  OperatorCode GetOperatorCode() override;
  void GetText(char** text, int* length) override;
  double GetNumber() override;

  /// Where the current token stands, "origin:line:column" (without the origin when the
  /// command has none); after the end, where the last token stands. For messages about
  /// the token the parser stopped at.
  std::string GetLocation() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
