#include "tests/fault/disk/DiskLog.h"

#include <filesystem>

namespace lumivard::platform::stores::disk {
namespace {

std::string nameIn(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

}  // namespace

void Recorder::done(const Call& call) {
    switch (call.kind) {
        case Call::tKind::kOpen:
            return open(call);
        case Call::tKind::kWrite:
            return write(call);
        case Call::tKind::kTruncate:
        case Call::tKind::kAllocate: {
            const bool truncates = call.kind == Call::tKind::kTruncate;
            Event& event = add(truncates ? Event::tKind::kTruncate : Event::tKind::kAllocate);
            event.file = _files.at(call.file);
            event.length = call.length;
            return;
        }
        case Call::tKind::kSync:
            if (call.folder) {
                add(Event::tKind::kSyncFolder);
            } else {
                add(Event::tKind::kSync).file = _files.at(call.file);
            }
            return;
        case Call::tKind::kRename:
        case Call::tKind::kLink:
        case Call::tKind::kUnlink: {
            Event& event = add(call.kind == Call::tKind::kRename ? Event::tKind::kRename
                               : call.kind == Call::tKind::kLink ? Event::tKind::kLink
                                                                 : Event::tKind::kUnlink);
            event.name = nameIn(call.path);
            event.other = nameIn(call.other);
            return;
        }
        case Call::tKind::kRead:
        case Call::tKind::kLock:
            return;
    }
}

void Recorder::acknowledge(unsigned int number) {
    add(Event::tKind::kAcknowledged).number = number;
}

Event& Recorder::add(Event::tKind kind) {
    Event& event = _log.emplace_back();
    event.kind = kind;
    return event;
}

void Recorder::open(const Call& call) {
    if (call.existed || call.folder) return;
    _files[call.file] = _made;  // the number of a file that is gone may come again
    Event& event = add(Event::tKind::kCreate);
    event.file = _made++;
    event.name = nameIn(call.path);
}

void Recorder::write(const Call& call) {
    Event event;
    event.kind = Event::tKind::kWrite;
    event.file = _files.at(call.file);
    event.position = call.position;
    event.length = call.bytes.size();
    event.bytes = call.bytes;
    _log.push_back(event);
    if (!call.synchronous) return;
    event.kind = Event::tKind::kSyncRange;
    event.bytes.clear();
    _log.push_back(event);
}

}  // namespace lumivard::platform::stores::disk
