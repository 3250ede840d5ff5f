// Scene files.
#pragma once

#include "model/scene.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vmeter {

// No scene file is larger, in bytes; who reads one need not read on beyond it.
inline constexpr size_t kSceneSizeMax = 1 << 20;

// Reads a scene file; throws std::runtime_error "FILE:LINE: KEY: reason" when it cannot be used, "FILE:
// reason" when it cannot be read.
Scene loadScene(const std::string& path);

// The same for a text at hand; name stands for FILE. A text beyond kSceneSizeMax is refused.
Scene parseScene(std::string_view text, const std::string& name);

// The scene that is built in, and its text.
Scene defaultScene();
std::string_view defaultSceneText();

// Every key that a scene can have, e.g. "signal.level_dbuv".
std::vector<std::string> sceneKeys();

} // namespace vmeter
