// MessageKeys.h - one named constant per catalogue key, so code names messages the compiler checks
#pragma once

/// `msg::k<name>` is the key of the catalogue entry QUILT_MESSAGE(name, key, wording). Code
/// passes these constants wherever it passes a key; a mistyped name does not compile, where a
/// mistyped key string would reach the reader as the raw key. The constants point at the key
/// texts themselves, so passing one costs what passing the literal did.
namespace msg {
#define QUILT_MESSAGE(name, key, wording) inline constexpr const char* k##name = key;
#include "host/output/MessageCatalogue.def"
#undef QUILT_MESSAGE
}  // namespace msg
