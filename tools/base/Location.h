#pragma once

#include <string>

// Stores in databases, which are given by a location where others are given by the name of their file:
// "postgresql://user@host:port/database?store=NAME".
namespace lvp::tool {

/// What the help of the verbs says that a store is.
#ifdef LVP_TOOL_POSTGRES
inline constexpr char kStoreHelp[] = "The store: a file, or postgresql://...";
inline constexpr char kNewStoreHelp[] = "The store: a file, made when it is not there, or postgresql://...";
#else
inline constexpr char kStoreHelp[] = "The store: a file";
inline constexpr char kNewStoreHelp[] = "The store: a file, made when it is not there";
#endif

/// Whether a store is given by a location in a database. Nothing is asked of the file system for one.
bool isLocation(const std::string& store);

/// Whether it begins as locations do for PostgreSQL's own clients, but not here: that is a slip, and no file.
bool isAlmostLocation(const std::string& store);

/// Whether two locations lead to one store, as far as they say so: whoever asks, and with which options.
bool isSameLocation(const std::string& a, const std::string& b);

/// A store as it may be shown to anybody: of a location the hosts, the database and the store, and nothing of who asks
/// and with which password. Another name stays as it is.
std::string shown(const std::string& store);

/// What a store is called: a file's name without its folders, and in a database the name of the store itself.
std::string calledName(const std::string& store);

/// What files that are made of a store are named after: the store's file, and for one in a database the store's name in
/// the current folder, with "_" for what cannot stand in the name of a file.
std::string fileBeside(const std::string& store);

/// A sentence that may repeat a word of the command line: where that is a location it stands there as it may be shown.
std::string withoutSecrets(std::string sentence, const std::string& word);

}  // namespace lvp::tool
