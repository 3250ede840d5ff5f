// toml++ as the scene uses it.
//
// Its parser guards some of its steps by assertions that a malformed file can reach: "[=" is enough. Left as
// they are, such a file aborts a debug build and is undefined behaviour in any other. Here a failed
// assertion is an exception in every build, for which NDEBUG must be out of sight of the header.
#pragma once

namespace vmeter {

struct TomlAssertion {};

[[noreturn]] void failTomlAssertion(); // throws TomlAssertion

} // namespace vmeter

#define TOML_ENABLE_FORMATTERS 0
#define TOML_ASSERT(expr) ((expr) ? void() : ::vmeter::failTomlAssertion())

#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")
