// SyntaxConverter.h - the base of every parse node: one virtual handler per token event
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class CommandScope;
class TableScope;
class TARN_DataSource;
class TARN_TokenSequence;
class VariableSet;

/// The base of all converters. The converters form a tree under the command root; the tree
/// holds the parsed command and, through the reader's current converter, is the parser's
/// state. SyntaxReader delivers one event per token to the current converter, and every
/// event handler returns the converter that becomes current next (often `this`).
///
/// The defaults below implement the shared protocol: an event that a converter cannot use
/// is passed to its parent or raises a catalogue error (SyntaxParserUtility). Errors are
/// thrown as BpComposite and end the command; warnings are reported and parsing goes on.
///
/// Ownership: a converter owns its square brackets (opened on it) and, for composites, its
/// children. Nodes handed to Add are owned by whoever the call chain makes their parent.
class SyntaxConverter {
 public:
  SyntaxConverter();
  virtual ~SyntaxConverter();
  SyntaxConverter(const SyntaxConverter&) = delete;
  SyntaxConverter& operator=(const SyntaxConverter&) = delete;

  /// The word used in messages and in the paren check: the parent's, or "QUILT" at the root.
  virtual std::string GetSubcommandName() const;
  /// The kind of node, a SyntaxConverterType value; kConverterPlain here.
  virtual int GetType() const;

  // Token events. `text` is the token's text as typed (a literal without its quotes).
  virtual SyntaxConverter* All(const std::string& text);
  /// A word followed by "=": the reader has consumed the "=" already.
  virtual SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens);
  virtual SyntaxConverter* By(const std::string& text);
  virtual SyntaxConverter* GreaterThan(const std::string& text);
  virtual SyntaxConverter* LeftParen(const std::string& text);
  virtual SyntaxConverter* LeftSquareBracket(const std::string& text);
  virtual SyntaxConverter* Literal(const std::string& text);
  virtual SyntaxConverter* Number(double value, const std::string& text);
  virtual SyntaxConverter* Period(const std::string& text);
  virtual SyntaxConverter* Plus(const std::string& text);
  virtual SyntaxConverter* RightParen(const std::string& text);
  virtual SyntaxConverter* RightSquareBracket(const std::string& text);
  virtual SyntaxConverter* Slash(const std::string& text);
  virtual SyntaxConverter* Ampersand(const std::string& text);
  /// A plain word: in variable context a variable or a multiple-response set ("$name").
  virtual SyntaxConverter* String(const std::string& text);
  /// A word right after "/": the name of a subcommand.
  virtual SyntaxConverter* SubCommandString(const std::string& text);
  virtual SyntaxConverter* To(const std::string& text);

  /// Places `child` in the tree. The default hands it to the parent, so a child offered to
  /// a leaf lands beside that leaf. Takes ownership; returns the converter to continue on.
  virtual SyntaxConverter* Add(SyntaxConverter* child);
  virtual void DissectTableInCubes();
  /// Attaches the run's data source to all converters (the pointer is a static of the run)
  /// and takes its case weight; the base weight is cleared. `dataSource` is not owned.
  virtual void SetDataSource(TARN_DataSource* dataSource);
  virtual void SetIsLeafNode(bool isLeaf);
  virtual void SetLastParenChild(SyntaxConverter* paren);
  /// `parent` is never null.
  virtual void SetParent(SyntaxConverter* parent);
  /// The children of the nearest composite: a leaf answers its parent's list.
  virtual std::vector<SyntaxConverter*>& Children();
  virtual SyntaxConverter* GetParent() const;
  /// The root of the tree this converter belongs to.
  virtual SyntaxConverter* TopParent();
  virtual bool IsDataWeighted() const;
  virtual bool IsDataFreqWeighted() const;
  virtual bool IsDataBaseWeighted() const;
  /// The command this converter belongs to; null while it stands in no command (a
  /// converter built alone, as tests do). Given by the parent on first use, or by the
  /// opener for a square bracket, and kept from then on.
  CommandScope* GetCommandScope() const;
  /// The table this converter belongs to; null outside a table.
  TableScope* GetTableScope() const;
  /// The table this converter belongs to; raises IncorrectSequence with "BY" outside a table.
  TableScope& RequireTableScope();
  /// Whether this node binds at least as tightly as the incoming operator `op`, so that
  /// `op` must climb past it. The default asks the parent.
  virtual bool IsLessInert(const SyntaxConverter* op) const;
  /// Runs the checks that need the whole subcommand; called on "/" and ".".
  virtual void ValidateAndCommit(const std::string& text);
  /// Creates a SyntaxVariableName for dictionary entry `index`, adds it here and to the
  /// table's variable list. Returns the new variable, which becomes current.
  virtual SyntaxConverter* AddAsVariable(int index, const std::string& name);
  /// Places the operator `op` by precedence and returns the converter to continue on.
  /// Takes ownership of `op`.
  virtual SyntaxConverter* InfixBinaryOperator(SyntaxConverter* op);

  /// The dictionary index of `name`; negative when there is no such variable.
  int VariableExists(const std::string& name) const;
  /// Looks for the multiple-response set `name` ("$..."). On a match `set` holds it and
  /// `name` is rewritten in the set's own spelling.
  bool MRSetExists(std::string& name, VariableSet& set) const;
  TARN_DataSource* GetDataSource() const;
  /// The paren most recently closed directly under this converter; null otherwise.
  SyntaxConverter* GetLastParenChild() const;
  /// The base weight variable chosen by WEIGHT in the command parsed last; -1 when none.
  /// Converters ask their command scope; this copy is for the table builder and the
  /// renderer, which run after the parse. A new command starts it at -1.
  static int GetBaseWeightVarIndex();
  static void SetBaseWeightVarIndex(int index);

  /// What may follow this converter in a table expression; the dump shows each flag.
  enum Context : unsigned {
    kContextNone = 0,  // the expression is over: only a subcommand word may follow
    kContextBy = 1,
    kContextGreaterThan = 2,
    kContextParen = 4,
    kContextPlus = 8,
    kContextSquareBracket = 16,
    kContextVariable = 32,
    /// An operand must come: a variable, a set or a parenthesis.
    kContextBeforeOperand = kContextParen | kContextVariable,
    /// An operand is complete: an operator, BY or a bracket may follow, not another operand.
    kContextAfterOperand = kContextBy | kContextGreaterThan | kContextPlus | kContextSquareBracket,
  };
  /// Makes exactly `contexts` (Context flags joined with |) legal next.
  void SetContexts(unsigned contexts);

  /// Writes this node and everything below it, one node per line, two blanks per level:
  /// kind, subcommand name, the six context flags, then the square brackets and children.
  void Dump(std::ostream& out, int depth = 0) const;

 protected:
  /// Appends the fields of a concrete class to its Dump line (after a blank); none here.
  virtual void DumpDetails(std::ostream& out) const;

  /// The brackets opened on this converter, for classes that must look at them.
  const std::vector<SyntaxConverter*>& GetSquareBrackets() const;

  /// Makes this converter the scope its descendants are given (the root and the table).
  void SetCommandScope(CommandScope* scope);
  void SetTableScope(TableScope* scope);
  /// For a converter without a parent (a square bracket): the converter whose scopes it
  /// shares. Not owned.
  void SetScopeSource(const SyntaxConverter* source);

 private:
  struct ConverterData;
  ConverterData* _converterData;
};
