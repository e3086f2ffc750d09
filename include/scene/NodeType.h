#pragma once

// Node type numbers as they appear in worlds and in track bindings. The numbers are fixed: tracks
// store them (a registration lists the node types it accepts), so they never change meaning.
enum NODE_TYPE {
    NODE_DUMMY = 0,
    OBJECT_MESH = 2,
    LIGHT_POINT = 5,
    LIGHT_SPOT = 6,
    CAMERA = 10,
    OBJECT_PREFAB = 18,
    EDITOR_CAMERA = 45,
};

// The names of the node types ("NodeDummy", "ObjectMesh", "LightPoint", "LightSpot", "Camera",
// "ObjectPrefab", "EditorCamera"); .world files name node types this way.
class NodeType {
public:
    // Returns the name of a node type, or null when type is not one of NODE_TYPE.
    static const char* getName(int type);
    // Returns the node type with this name, or -1 when no type has it.
    static int findByName(const char* name);
    // Returns whether type is one of NODE_TYPE.
    static bool isValid(int type);
    // Returns whether nodes of this type carry a light colour and intensity.
    static bool hasLight(int type);
    // Returns whether nodes of this type carry a camera field of view.
    static bool hasCamera(int type);
    // Returns whether nodes of this type carry a material and a mesh.
    static bool hasSurface(int type);
};
