#include "support/own_call.h"

namespace testing_support {

OwnCall own_call(int argc, char** argv) {
  return {argv[0], {argv + 1, argv + argc}};
}

}  // namespace testing_support
