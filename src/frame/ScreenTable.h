#pragma once

#include <memory>
#include <string_view>
#include <vector>

namespace lorvane {

class Module;
class Screen;

// The screens of the module by name. The name is compared in upper case; a name outside the
// table gives nothing.
std::unique_ptr<Screen> CreateScreen(Module& module, std::string_view name);

// The upper-case names of the table.
std::vector<std::string_view> ScreenNames();

} // namespace lorvane
