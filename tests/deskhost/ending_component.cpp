#include <cstdlib>

// A component that takes its host with it, as soon as it is loaded.
[[maybe_unused]] static const int ended = (std::_Exit(3), 0);
