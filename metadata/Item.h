#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "metadata/Tag.h"
#include "metadata/TextMap.h"

namespace lumivard::platform::data::Record {
class Entity;
}

namespace lumivard::platform::data::Metadata {

using core::storage::datastore::IDataStore;

class Set;

/// The in-memory object over one entity record: its identity, name, path, flags and localized names.
///
/// It holds one count in the record's `refs` as long as it lives (derived classes take it and give it back). It does
/// not follow changes that reach the record by another way: what it caches, it caches from its opening on. Localized
/// names are loaded when they are first asked for, and changes to them reach the store when the object is destroyed.
///
/// One thread at a time, inside the store's guard. Exceptions of the store pass through, except from destructors: what
/// the store refuses there is lost.
class Item {
public:
    static constexpr unsigned int BADOFF = IDataStore::BADOFF;

    /// What `localize` answers for a locale that has no text.
    static constexpr unsigned int kNoLocale = 0xFFFFFFFFu;

    virtual ~Item();
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    /// Whether no other object stands over this record or, for a set, over any record below it.
    virtual bool unreferenced() = 0;

    /// Erases everything that the record owns, in the store: localized names, and for sets all children. The record
    /// itself stays.
    virtual void clear() = 0;

    /// Copies the record and everything below it into a store, which may be its own, and returns the offset of the
    /// copy. The copy is attached to nothing: its `parent` still is the source's number.
    virtual unsigned int clone(IDataStore* target) = 0;

    IDataStore* store() const { return _store; }
    unsigned int offset() const { return _offset; }

    /// The owner's offset when the object was opened.
    unsigned int parent() const { return _parent; }

    /// The name when the object was opened.
    const wchar_t* tag() const { return _tag.text(); }

    /// Makes the record of a new item, whose name is free there, a child of a set.
    void comeTo(Set& owner);

    /// Fills `out` with the names from the top level down to this item, joined by ".". The owners' names come from the
    /// store, the item's own is `tag()`; the root's is left out. One record is read for each level.
    void path(std::wstring& out) const;

    /// The record's flag bits (`Record::tFlag`), read from the store; setting and clearing some of them there.
    unsigned char flags() const;
    void on(unsigned char bits);
    void off(unsigned char bits);

    /// Clears `kHidden` of the record, whether it was set or not, and then of its owners up to the first that is not
    /// hidden. A record without an owner is never changed.
    void show();

    /// The number of locales that have a text; 0 for a record that has never been saved with one, whatever was added
    /// to this object.
    unsigned int locales();

    /// Sets the text of a locale, or removes it for a null `name`, and returns the entry's index. Removing moves the
    /// later entries down, but the indices that this object answers for them stay as they were. An unknown locale
    /// without a name, and a null locale, change nothing and give `kNoLocale`.
    unsigned int localize(const wchar_t* name, const wchar_t* locale);

    /// The index of a locale, or `kNoLocale`; always that for a record that has never been saved with locales.
    unsigned int localize(const wchar_t* locale);

    /// Gives the text and the locale of an entry; both are empty where there is none.
    void locale(unsigned int index, std::wstring& name, std::wstring& locale);

    /// Saves changes to the localized names now. For an object that is about to go, whose owner wants to hear of it
    /// when the store refuses them.
    void save();

    /// Copies the record of the localized names into another store and returns its offset, or `BADOFF` when there is
    /// none. Changes that were not yet saved are not part of it.
    unsigned int duplicate(IDataStore* target);

    /// Erases the record of the localized names, if there is one, and forgets them.
    void cleanup();

protected:
    Item() = default;

    /// Takes in what all opened records share. For derived constructors. `name` is that of the record, where the caller
    /// has it at hand.
    void open(IDataStore* store, const Record::Entity& record, std::string_view name);
    void open(IDataStore* store, const Record::Entity& record);

    /// Gives back the count that the object holds in its record. For derived destructors.
    void release() noexcept;

    IDataStore* _store = nullptr;
    unsigned int _offset = BADOFF;
    unsigned int _parent = BADOFF;
    unsigned int _locale = BADOFF;
    Tag _tag;

private:
    struct tName : core::memory::PooledObject {
        std::wstring locale;
        std::wstring name;
    };

    /// The localized names at hand. Most objects are opened and dropped without a question for them.
    struct tLocales {
        TextMap<unsigned int> index;
        std::vector<std::unique_ptr<tName>> names;
        /// Removed entries: after a removal a key of the index may still point into one.
        std::vector<std::unique_ptr<tName>> removed;
        bool dirty = false;
    };

    /// Those that were loaded or changed; loads them where there are none at hand.
    tLocales& loaded();
    static tLocales read(IDataStore* store, unsigned int offset);
    void saveLocales();
    /// Takes an entry out of the list; `locale` is the one whose text was asked to go.
    void remove(unsigned int index, const wchar_t* locale);

    std::unique_ptr<tLocales> _locales;
};

}  // namespace lumivard::platform::data::Metadata
