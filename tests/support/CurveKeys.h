#pragma once

#include <random>
#include <vector>

#include "anim/TrackCurve.h"
#include "anim/TrackKey.h"

// Keys like the editor's curves, for checking the curve evaluators against each other and against
// bezierReference: irregular times 0.05 to 0.15 s apart from a start that depends on the seed,
// values in [-1, 1], and handles up to the shortest segment long, so that Bezier timing curves can
// have flat stretches while no handle reaches past its segment (bezierReference does not clamp).
// Every key type follows every other; smooth keys carry the tangents the engine gives them.
inline std::vector<TrackKeyFloat> randomKeys(int count, unsigned seed)
{
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<TrackKeyFloat> keys;
    float t = 0.05f * static_cast<float>(seed % 7);
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        int type = static_cast<int>((seed + static_cast<unsigned>(i)) % TRACK_KEY_TYPE_COUNT);
        keys.push_back({t, unit(rng) * 2.0f - 1.0f, tangents, type});
        t += 0.05f + 0.1f * unit(rng);
    }
    TrackCurve::smoothTangents(keys.data(), count);
    return keys;
}
