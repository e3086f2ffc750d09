#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class Material;
class Node;
class Package;
class World;

// Turns the document tree of a .world file into nodes, render settings and materials (the layout
// is described in docs/world-format.md). It stops at the first problem and logs it once as
// "path:line:column: reason", naming the offending field.
class WorldReader {
public:
    // path is only used in messages.
    explicit WorldReader(const char* path);

    // Fills world (which must be empty) and appends the materials, bases before the materials
    // derived from them, to materials, which the caller then owns. Returns false after logging the
    // first problem; what was filled in so far is then the caller's to throw away.
    bool read(const Package* root, World& world, jVector<Material*>& materials);

private:
    bool read_header(const Package* root);
    bool read_render(const Package* root, World& world);
    bool read_materials(const Package* root, jVector<Material*>& materials);
    bool read_material(const Package* item, jVector<Material*>& materials);
    bool read_parameter(const Package* item, Material* material);
    bool read_nodes(const Package* list, World& world, Node* prefab);
    bool read_node(const Package* item, World& world, Node* prefab);
    bool read_node_properties(const Package* item, Node* node);
    // Each reads its property group when the node's type has it, and ignores it otherwise.
    bool read_light(const Package* item, Node* node);
    bool read_camera(const Package* item, Node* node);
    bool read_surface(const Package* item, Node* node);

    // Returns the member, or null after logging a missing field when required is true.
    const Package* member(const Package* object, const char* name, bool required);
    bool expect_object(const Package* value, const char* what);
    bool expect_array(const Package* value, const char* what);
    bool read_int(const Package* object, const char* name, bool required, int& out);
    bool read_text(const Package* object, const char* name, bool required, jString& out);
    bool read_bool(const Package* object, const char* name, bool& out);
    bool read_float(const Package* object, const char* name, float& out);
    // Reads an array of exactly count numbers into out[0..count).
    bool read_floats(const Package* object, const char* name, int count, float* out);
    // Reads one number that must fit a float; element says it is part of the array name.
    bool read_number(const Package* value, const char* name, bool element, float& out);
    bool read_vec3(const Package* object, const char* name, vec3& out);
    bool read_vec4(const Package* object, const char* name, vec4& out);
    bool fail(const Package* at, const char* format, ...) __attribute__((format(printf, 3, 4)));

    const char* m_path;
    // Where the reader is, for messages: "materials[1]", "nodes[3].internal[0]".
    jString m_context;
};
