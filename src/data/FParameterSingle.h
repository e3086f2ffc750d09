#pragma once

#include "data/FParameter.h"
#include "kit/jSet.h"

class FKey;
class UITrackLineKey;

// A parameter that owns keys: the keys sorted by time with a cache of their times, the keys the
// views marked, and the row, key line and curve that show it. The kinds add the engine parameter's
// type, the key kind and how keys are read from and written to the engine.
class FParameterSingle : public FParameter {
public:
    FParameterSingle() = default;
    ~FParameterSingle() override;

    // The keys the views marked (each at most once).
    virtual jSet<FKey*>& getKeySet() { return m_key_set; }
    // True when the parameter has a curve and the curve panel shows it.
    virtual bool isCurveShown() const;
    // The row's name text and its value text; each marks the row for a new layout.
    virtual void setRowText(const jString& text);
    virtual void setRowSubText(const jString& text);
    TrackParameter* getTrackParameter() const override { return m_data; }
    virtual void setTrackParameter(TrackParameter* param) { m_data = param; }
    virtual UITrackRow* getRow() const { return m_row; }
    virtual void setRow(UITrackRow* row) { m_row = row; }
    virtual UITrackLine* getLine() const { return m_line; }
    virtual void setLine(UITrackLine* line) { m_line = line; }
    virtual UITrackCurve* getCurve() const { return m_curve; }
    virtual void setCurve(UITrackCurve* curve) { m_curve = curve; }

    void setColor(const vec4& color) override;
    void sortKeys() override;
    void release() override;
    void onDelete() override;
    void markDirty() override;
    void collectUI(jVector<UITrackRow*>& rows, jVector<UITrackLine*>& lines, jVector<UITrackCurve*>& curves) override;
    void retitle() override;
    // Sets the row's "E" and "T" buttons and the curve's visibility from the switch target.
    void showSwitches();

    const jVector<FKey*>& getKeys() const { return m_keys; }
    int getNumKeys() const { return m_keys.size(); }
    FKey* getKey(int i) const { return m_keys[i]; }
    // The time of each key, in key order (refreshed by sortKeys).
    const jVector<float>& getKeyTimes() const { return m_key_times; }
    // Appends key to the key list (it grows by doubling; the list is not re-sorted).
    void appendKey(FKey* key);
    // Takes key out of the key list (later keys move down); false when it is not there.
    bool removeKey(FKey* key);
    // Makes a key at time t holding the value the parameter has there, as a double click on an empty
    // spot of its key line asks: a float or double key takes the curve's value with flat tangents, a
    // colour or switch key the value the engine evaluates (the live value where the parameter has no
    // keys yet). The key is appended unsorted; the caller sorts the keys and writes them to the engine.
    // Returns null for the kinds that make no key so (file and material names) and when the value
    // cannot be read.
    virtual FKey* makeKeyAt(float t) = 0;
    // Adds keys to the marked set; a key already there is left alone.
    void markKeys(const jVector<FKey*>& keys);
    // The time of the key before t: the first key's time before it, the time of the key at or
    // before t otherwise; -1e9 with found false with no keys, at or after the last key, and for t
    // exactly on a key.
    float getKeyTimeBefore(float t, bool& found) const;

protected:
    // Builds the row (columns "E" and "T" off, texts "Hello" and "World" when helloWorld), the
    // key line and, when withCurve, the curve, all coloured from the palette and handed to the
    // panels. The row text follows the display rule when name is not empty; returns false (nothing
    // built) when that type is not registered.
    bool build_views(const jString& name, bool helloWorld, bool withCurve);
    // Makes the key's line mark (and its curve mark when the curve is shown) after dropping old ones.
    virtual void create_ui_for_key(FKey* key);
    // The key line of the kind, and its mark for a key.
    virtual UITrackLine* make_line() const = 0;
    virtual UITrackLineKey* make_line_key(FKey* key) const = 0;
    // Makes the editor keys from the engine parameter's key records.
    virtual void read_keys() = 0;
    // Makes room for count keys in the key list and the key line, before reading that many.
    void reserve_keys(int count);
    // Frees every key (and its marks) and empties the list and caches.
    void free_keys(const char* tag);
    // Reads the keys' times, in the keys' order, into m_key_times.
    void read_times();

private:
    // The engine parameter whose switches the row shows and sets: the compound's when the
    // components share them (a nested track), else this parameter's own.
    TrackParameter* switch_target() const;
    void on_row_changed(UITrackRow*&& row);
    void create_curve_key(FKey* key);
    // Gives every key without a curve mark one, when the curve is first shown: a curve that is never
    // shown needs none, and a large track has millions of keys. A key selected in the key lines is
    // selected in the curve view too.
    void create_curve_keys();

    jVector<float> m_key_times;
    jVector<FKey*> m_keys;
    jSet<FKey*> m_key_set;
    TrackParameter* m_data = nullptr;
    UITrackRow* m_row = nullptr;
    UITrackLine* m_line = nullptr;
    UITrackCurve* m_curve = nullptr;
};
