#include "frame/zverror.h"

namespace zelvar {

const char* zverror::what() const noexcept { return _text.c_str(); }

}  // namespace zelvar
