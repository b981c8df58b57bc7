# Copies those sources that read records from SOURCES to TARGET, and makes each protection in them a choice of
# `PlantedFaults.h`. A protection that is not found as it is written here ends the build: then the row wants mending.
cmake_minimum_required(VERSION 3.25)

function(plant file sound faulty)
    if(NOT file IN_LIST known)
        file(READ "${SOURCES}/${file}" "text_${file}")
        set(known ${known} ${file} PARENT_SCOPE)
    endif()
    set(text "${text_${file}}")
    string(FIND "${text}" "${sound}" first)
    string(FIND "${text}" "${sound}" last REVERSE)
    if(first EQUAL -1 OR NOT first EQUAL last)
        message(FATAL_ERROR "${file} must have this once: ${sound}")
    endif()
    string(REPLACE "${sound}" "${faulty}" text "${text}")
    set("text_${file}" "${text}" PARENT_SCOPE)
endfunction()

set(known)

# A buffer ends where its record does, so that what is read behind a record lies behind its block of memory.
plant(record/Base.cpp
    [[const auto* entry = std::lower_bound(kpAllocations.begin(), kpAllocations.end(), size);
    return entry == kpAllocations.end() ? size : *entry;]]
    [[return size;]])

plant(record/Base.h
    [[kInside = 128]]
    [[kInside = 1]])
plant(record/Base.h
    [[return position < _size ? static_cast]]
    [[return fuzz::planted(fuzz::tFault::kByte) || position < _size ? static_cast]])
plant(record/Base.h
    [[if (std::uint64_t{position} + sizeof(unsigned int) > _size) return absent;]]
    [[const bool there = std::uint64_t{position} + sizeof(unsigned int) <= _size;
    if (!there && !fuzz::planted(fuzz::tFault::kWord)) return absent;]])
plant(record/Base.h
    [[std::min<std::uint64_t>(claimed, _size - begin)]]
    [[fuzz::planted(fuzz::tFault::kSection) ? claimed : std::min<std::uint64_t>(claimed, _size - begin)]])
plant(record/Base.h
    [[if (_size < form.header) return;]]
    [[if (_size < form.header && !fuzz::planted(fuzz::tFault::kFixedPart)) return;]])
plant(record/Entity.cpp
    [[std::min<std::uint64_t>(word(field), size() - begin)]]
    [[fuzz::planted(fuzz::tFault::kSection) ? word(field) : std::min<std::uint64_t>(word(field), size() - begin)]])
plant(record/Entity.cpp
    [[if (begin > size()) return {};]]
    [[if (begin > size() && !fuzz::planted(fuzz::tFault::kFixedPart)) return {};]])
plant(record/Entity.cpp
    [[if (length < name.size()) return false;]]
    [[if (length < name.size() && !fuzz::planted(fuzz::tFault::kName)) return false;]])
plant(record/Base.cpp
    [[if (position > _size || size > _size - position) return false;]]
    [[const bool inside = position <= _size && size <= _size - position;
    if (!inside && !fuzz::planted(fuzz::tFault::kOverwrite)) return false;]])
plant(record/Offsets.cpp
    [[size() >= kEntries ?]]
    [[(fuzz::planted(fuzz::tFault::kList) || size() >= kEntries) ?]])
plant(record/Primitive.cpp
    [[if (start > value.size() || length > value.size() - start) return false;]]
    [[const bool fits = start <= value.size() && length <= value.size() - start;
    if (!fits && !fuzz::planted(fuzz::tFault::kOverwrite)) return false;]])
plant(design/Primitive.cpp
    [[if (startBytes + countBytes > value.size()) return 0;]]
    [[if (startBytes + countBytes > value.size() && !fuzz::planted(fuzz::tFault::kValues)) return 0;]])
plant(metadata/Ascent.h
    [[return false;]]
    [[return fuzz::planted(fuzz::tFault::kCircle);]])
plant(design/Subtree.cpp
    [[if (_seen.contains(offset)) return;]]
    [[if (_seen.contains(offset) && !fuzz::planted(fuzz::tFault::kCopies)) return;]])
plant(design/Subtree.cpp
    [[owned.children != BADOFF && _owned.insert(owned.children).second;]]
    [[owned.children != BADOFF &&
            (_owned.insert(owned.children).second || fuzz::planted(fuzz::tFault::kCopies));]])

foreach(file IN LISTS known)
    file(WRITE "${TARGET}/${file}" "#include \"tests/fuzz/PlantedFaults.h\"\n#line 1 \"${SOURCES}/${file}\"\n${text_${file}}")
endforeach()
