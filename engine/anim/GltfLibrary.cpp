// The glTF library's implementation, compiled once for the whole engine.
#define TINYGLTF_IMPLEMENTATION
#include "TinyGltf.h"
