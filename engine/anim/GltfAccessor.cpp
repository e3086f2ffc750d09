#include "GltfAccessor.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

template <class T>
T load(const unsigned char* data)
{
    T v;
    std::memcpy(&v, data, sizeof v);
    return v;
}

} // namespace

bool GltfAccessor::read(const tinygltf::Model& model, int index, int width, std::vector<double>& values,
                        std::string& error)
{
    std::string where = "accessor " + std::to_string(index) + ": ";
    if (index < 0 || index >= static_cast<int>(model.accessors.size())) {
        error = where + "there is no such accessor";
        return false;
    }
    const tinygltf::Accessor& a = model.accessors[index];
    if (tinygltf::GetNumComponentsInType(static_cast<uint32_t>(a.type)) != width) {
        error = where + "has " + std::to_string(tinygltf::GetNumComponentsInType(static_cast<uint32_t>(a.type))) +
                " components per element where " + std::to_string(width) + " are needed";
        return false;
    }
    if (!readable(a.componentType, a.normalized)) {
        error = where + "component type " + std::to_string(a.componentType) +
                " is neither float nor a normalised integer";
        return false;
    }
    values.assign(a.count * static_cast<size_t>(width), 0.0);
    if (a.bufferView >= 0 && a.count > 0) {
        size_t size = static_cast<size_t>(tinygltf::GetComponentSizeInBytes(static_cast<uint32_t>(a.componentType))) *
                      static_cast<size_t>(width);
        int stride = a.bufferView < static_cast<int>(model.bufferViews.size())
                         ? a.ByteStride(model.bufferViews[a.bufferView])
                         : static_cast<int>(size);
        const unsigned char* data = nullptr;
        if (stride < static_cast<int>(size)) {
            error = where + "the byte stride of its buffer view is smaller than an element or not a multiple of a component";
            return false;
        }
        if (!locate(model, a.bufferView, a.byteOffset, static_cast<size_t>(stride) * (a.count - 1) + size, data, error)) {
            error = where + error;
            return false;
        }
        decode(data, a.count, width, static_cast<size_t>(stride), a.componentType, a.normalized, values.data());
    }
    if (a.sparse.isSparse && !applySparse(model, a, width, values, error)) {
        error = where + error;
        return false;
    }
    return true;
}

double GltfAccessor::component(const unsigned char* data, int componentType, bool normalized)
{
    switch (componentType) {
    case TINYGLTF_COMPONENT_TYPE_FLOAT:
        return load<float>(data);
    case TINYGLTF_COMPONENT_TYPE_BYTE:
        return std::max(load<int8_t>(data) / 127.0, -1.0);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
        return normalized ? load<uint8_t>(data) / 255.0 : load<uint8_t>(data);
    case TINYGLTF_COMPONENT_TYPE_SHORT:
        return std::max(load<int16_t>(data) / 32767.0, -1.0);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
        return normalized ? load<uint16_t>(data) / 65535.0 : load<uint16_t>(data);
    default:
        return load<uint32_t>(data);
    }
}

bool GltfAccessor::readable(int componentType, bool normalized)
{
    switch (componentType) {
    case TINYGLTF_COMPONENT_TYPE_FLOAT:
        return true;
    case TINYGLTF_COMPONENT_TYPE_BYTE:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
    case TINYGLTF_COMPONENT_TYPE_SHORT:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
        return normalized;
    default:
        return false;
    }
}

bool GltfAccessor::locate(const tinygltf::Model& model, int view, size_t offset, size_t size,
                          const unsigned char*& data, std::string& error)
{
    if (view < 0 || view >= static_cast<int>(model.bufferViews.size())) {
        error = "buffer view " + std::to_string(view) + " does not exist";
        return false;
    }
    const tinygltf::BufferView& v = model.bufferViews[view];
    if (offset > v.byteLength || size > v.byteLength - offset) {
        error = "reads " + std::to_string(size) + " bytes from offset " + std::to_string(offset) + " of buffer view " +
                std::to_string(view) + ", which has " + std::to_string(v.byteLength);
        return false;
    }
    if (v.buffer < 0 || v.buffer >= static_cast<int>(model.buffers.size())) {
        error = "buffer view " + std::to_string(view) + " names buffer " + std::to_string(v.buffer) +
                ", which does not exist";
        return false;
    }
    const std::vector<unsigned char>& bytes = model.buffers[v.buffer].data;
    if (v.byteOffset > bytes.size() || v.byteLength > bytes.size() - v.byteOffset) {
        error = "buffer view " + std::to_string(view) + " reaches past the end of buffer " + std::to_string(v.buffer) +
                " (" + std::to_string(bytes.size()) + " bytes)";
        return false;
    }
    data = bytes.data() + v.byteOffset + offset;
    return true;
}

void GltfAccessor::decode(const unsigned char* data, size_t count, int width, size_t stride, int componentType,
                          bool normalized, double* out)
{
    size_t size = static_cast<size_t>(tinygltf::GetComponentSizeInBytes(static_cast<uint32_t>(componentType)));
    for (size_t i = 0; i < count; ++i) {
        for (int c = 0; c < width; ++c)
            *out++ = component(data + i * stride + static_cast<size_t>(c) * size, componentType, normalized);
    }
}

bool GltfAccessor::applySparse(const tinygltf::Model& model, const tinygltf::Accessor& a, int width,
                               std::vector<double>& values, std::string& error)
{
    size_t count = static_cast<size_t>(std::max(a.sparse.count, 0));
    int indexType = a.sparse.indices.componentType;
    int indexSize = tinygltf::GetComponentSizeInBytes(static_cast<uint32_t>(indexType));
    if (indexType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE && indexType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT &&
        indexType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT) {
        error = "sparse indices must be unsigned integers";
        return false;
    }
    size_t valueSize =
        static_cast<size_t>(tinygltf::GetComponentSizeInBytes(static_cast<uint32_t>(a.componentType))) * width;
    const unsigned char* indices = nullptr;
    const unsigned char* sparse = nullptr;
    if (count == 0)
        return true;
    if (!locate(model, a.sparse.indices.bufferView, static_cast<size_t>(std::max(a.sparse.indices.byteOffset, 0)),
                count * static_cast<size_t>(indexSize), indices, error) ||
        !locate(model, a.sparse.values.bufferView, static_cast<size_t>(std::max(a.sparse.values.byteOffset, 0)),
                count * valueSize, sparse, error))
        return false;
    std::vector<double> replaced(count * static_cast<size_t>(width));
    decode(sparse, count, width, valueSize, a.componentType, a.normalized, replaced.data());
    for (size_t i = 0; i < count; ++i) {
        size_t at = static_cast<size_t>(component(indices + i * indexSize, indexType, false));
        if (at >= a.count) {
            error = "sparse index " + std::to_string(at) + " is past the accessor's " + std::to_string(a.count) +
                    " elements";
            return false;
        }
        std::copy_n(replaced.begin() + static_cast<long>(i * width), width, values.begin() + static_cast<long>(at * width));
    }
    return true;
}
