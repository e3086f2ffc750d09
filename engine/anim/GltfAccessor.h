#pragma once

#include <string>
#include <vector>

#include "TinyGltf.h"

// Reads the numbers of a glTF accessor as glTF 2.0 lays them out: through its buffer view's stride
// (tightly packed without one), floats as they are and normalised integers mapped to [0, 1] or
// [-1, 1], with a sparse accessor's values put over the base data (zeros without a buffer view).
// Every offset is checked against the buffer before a byte is read.
class GltfAccessor {
public:
    // Reads accessor index of model into values (count * width numbers, element by element), width
    // being the number of components its type must have (1 scalar, 3 vec3, 4 vec4). Returns false
    // with the problem in error ("accessor 3: ...") when the index, type, component type or any
    // range is wrong; values is then unspecified.
    static bool read(const tinygltf::Model& model, int index, int width, std::vector<double>& values,
                     std::string& error);

private:
    // Returns the number a component of componentType at data stands for (normalised when asked).
    static double component(const unsigned char* data, int componentType, bool normalized);
    // Returns whether the component type may be read here: float, or an integer type when
    // normalised.
    static bool readable(int componentType, bool normalized);
    // Points data at the first byte of a view's range of size bytes from offset; false when the
    // view or its buffer does not hold it.
    static bool locate(const tinygltf::Model& model, int view, size_t offset, size_t size,
                       const unsigned char*& data, std::string& error);
    // Reads count elements of width components, stride bytes apart, from data.
    static void decode(const unsigned char* data, size_t count, int width, size_t stride, int componentType,
                       bool normalized, double* out);
    // Puts the sparse values of accessor a over values.
    static bool applySparse(const tinygltf::Model& model, const tinygltf::Accessor& a, int width,
                            std::vector<double>& values, std::string& error);
};
