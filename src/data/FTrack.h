#pragma once

#include <string>

#include "kit/jSet.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class FKey;
class FParameter;
class FParameterColor;
class FParameterDVec3;
class FParameterDouble;
class FParameterFloat;
class FParameterSingle;
class FParameterStringFile;
class FParameterStringMaterial;
class FParameterToggle;
class FParameterTrack;
class FParameterVec3;
class Package;
class Track;
class TrackParameter;
class World;

// The editor's document: owns one engine track, which the engine plays and saves, and one editor
// parameter for every engine parameter the editor can show. Compound parameters (vectors, nested
// tracks) are listed apart from the parameters that own keys; the components a compound makes are
// in the key-owning list too.
class FTrack {
public:
    // Makes a document with an empty engine track.
    FTrack();
    FTrack(const FTrack&) = delete;
    FTrack& operator=(const FTrack&) = delete;

    // Returns the engine track (null only after release).
    virtual Track* getEngineTrack() const { return m_track; }
    // Replaces the engine track pointer without releasing the old one; the caller owns the exchange.
    virtual void setEngineTrack(Track* track) { m_track = track; }
    // The compound parameters (a failed compound leaves a null entry).
    virtual jVector<FParameter*>& getParameters() { return m_parameters; }
    // Every parameter that owns keys, components included.
    virtual jVector<FParameterSingle*>& getSingleParameters() { return m_singles; }
    virtual jSet<FParameterSingle*>& getSelectedParameters() { return m_selected; }
    // Replaces the selected parameters with a copy of parameters.
    virtual void setSelectedParameters(const jSet<FParameterSingle*>& parameters);
    // The marked keys (each parameter's key set, what the key commands act on): clearMarks unmarks
    // every key of the track; mark marks one (nothing for a key without a parameter). A view that
    // chose a selection calls the first, then the second for each key it shows selected.
    void clearMarks();
    static void mark(FKey* key);
    // Empties the document and frees the engine track; the document must not be used afterwards.
    virtual void release();

    // Each binds a new editor parameter to an engine parameter of the track (name is shown on its
    // row). Returns null (the reason logged) when it cannot be made.
    FParameterToggle* createParameterToggle(TrackParameter* param, const jString& name);
    FParameterFloat* createParameterFloat(TrackParameter* param, const jString& name);
    FParameterDouble* createParameterDouble(TrackParameter* param, const jString& name);
    FParameterColor* createParameterColor(TrackParameter* param, const jString& name);
    FParameterVec3* createParameterVec3(TrackParameter* param, const jString& name);
    FParameterDVec3* createParameterDVec3(TrackParameter* param, const jString& name);
    FParameterTrack* createParameterTrack(TrackParameter* param, const jString& name);
    FParameterStringFile* createParameterStringFile(TrackParameter* param, const jString& name);
    FParameterStringMaterial* createParameterStringMaterial(TrackParameter* param, const jString& name);
    // Each makes a new engine parameter of its kind in the engine track and its editor parameter.
    // Returns null (the reason logged, the engine track unchanged) when it cannot be made.
    FParameterToggle* createParameterToggle(const jString& name);
    FParameterFloat* createParameterFloat(const jString& name);
    FParameterDouble* createParameterDouble(const jString& name);
    FParameterColor* createParameterColor(const jString& name);
    FParameterVec3* createParameterVec3(const jString& name);
    FParameterDVec3* createParameterDVec3(const jString& name);
    FParameterTrack* createParameterTrack(const jString& name);
    FParameterStringFile* createParameterStringFile(const jString& name);
    FParameterStringMaterial* createParameterStringMaterial(const jString& name);

    // Makes a new parameter of a kind (a TRACK_PARAMETER_TYPE) as the create function of that kind
    // does; null for a kind the editor cannot show, or when it cannot be made (logged).
    FParameter* createParameter(int kind, const jString& name);

    // Replaces the document with a parsed track file bound to world and makes an editor parameter
    // for every engine parameter of a kind the editor shows. Returns false when the engine refuses
    // the file (the reason is logged); the document is then empty.
    bool load(Package* root, World* world);
    // load in two halves, for a caller that frees the parsed tree in between: the engine track
    // reads the tree (false, with the document empty, when it refuses it), then the editor
    // parameters are made from the engine track.
    bool loadEngine(Package* root, World* world);
    void createFromEngine();
    // Frees every editor parameter and empties the engine track; it stays allocated.
    void clear();
    // True when there is no engine track or it has no parameter.
    bool isEmpty() const;
    int getNumSingleParameters() const { return m_singles.size(); }
    // Take a parameter out of its list without freeing it; false when it is not listed.
    bool removeParameter(FParameter* parameter);
    bool removeSingleParameter(FParameterSingle* parameter);

    // The editor parameter that stands for the engine track's parameter at index (the compound of a
    // vector or a nested track); null for a bad index or a kind the editor does not show.
    FParameter* parameterAt(int index) const;
    // Writes the engine track's parameter at index as its object of a saved track, key records
    // included, into bytes. Returns false (logged) for a bad index or an unwritable parameter.
    bool writeParameter(int index, std::string& bytes) const;
    // Makes a parameter written by writeParameter the engine track's parameter at index, with its
    // editor parameter, rows and lines placed among the others' as a load of the track places them.
    // Returns false (logged, the document unchanged) when bytes are no parameter.
    bool insertParameter(int index, const std::string& bytes);
    // As insertParameter, in place of the parameter at index, which is freed with its views; the
    // new rows keep the old ones' colours (an insert gives every row the colour of its place).
    // Returns false (logged, unchanged) on a bad index or bytes.
    bool replaceParameter(int index, const std::string& bytes);
    // Frees the engine track's parameter at index with its editor parameter and views; false (nothing
    // done) for a bad index.
    bool eraseParameter(int index);

private:
    // Reads a parameter written by writeParameter into a new engine parameter; null when it is none.
    TrackParameter* read_parameter(const std::string& bytes) const;
    // Makes the editor parameter of param, the engine track's parameter at index, and places it
    // among the others as a load does; returns where the first of its singles went.
    int create_at(int index, TrackParameter* param);
    // Moves the editor parameters made since the lists held singles and compounds entries to
    // the place of the engine parameter at index; returns where the first of their singles went.
    int place(int index, int singles, int compounds);
    template <class T>
    T* create_from(TrackParameter* param, const jString& name, const char* tag);
    template <class T>
    T* create_new(const jString& name, const char* tag);
    template <class T>
    T* created(T* parameter, bool made, const char* tag);
    // Calls visit with a null pointer of the editor parameter type of an engine kind and the
    // allocation tag of its create functions; returns what visit returns, or null for a kind the
    // editor does not show.
    template <class Visit>
    static FParameter* for_kind(int kind, Visit visit);
    FParameter* create_for_kind(TrackParameter* param);

    Track* m_track;
    jVector<FParameter*> m_parameters;
    jVector<FParameterSingle*> m_singles;
    jSet<FParameterSingle*> m_selected;
};
