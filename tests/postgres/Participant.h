#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/model/AnyOperation.h"
#include "tests/model/RealTree.h"
#include "tests/postgres/OperationLog.h"
#include "tests/postgres/SharedModel.h"

namespace lumivard::platform::model {

/// One of several processes that change a tree together: it does random operations, some under each guard, notes them
/// in the log, and compares what it sees with the model, which it brings to the same place of the log.
///
/// Objects that it keeps stay open while others change and destroy what they look at.
class Participant {
public:
    using tOpen = std::function<std::unique_ptr<IDataStore>()>;

    struct tPlan {
        unsigned int process = 0;
        std::uint64_t seed = 0;
        std::uint64_t operations = 0;  ///< how many the log is to have, of all processes together

        /// Whether to end before, since somebody has found a difference; may be empty.
        std::function<bool()> isOver{};

        /// Asks for being killed, now and then, and returns; empty to live on.
        std::function<void()> expose{};

        /// Is told the first difference, as lines for a person, and ends the process: what is found under a guard is
        /// not to be stored, nor is what open objects write when they go.
        std::function<void(const std::string&)> fail{};
    };

    Participant(tOpen open, tPlan plan);

    /// Does its part.
    void run();

private:
    bool isOver() const { return _log->operations() >= _plan.operations || (_plan.isOver && _plan.isOver()); }
    void open();
    void close();
    void begin();
    void round();
    void end();
    void hear();
    void operate(unsigned int count);
    void perform(const TreeOperation& operation);
    TreeOperation any();
    void makeSmaller(TreeOperation& operation);
    void note();
    void compare();
    [[noreturn]] void differs(const std::string& how);

    const tOpen _open;
    const tPlan _plan;
    std::unique_ptr<IDataStore> _store;
    std::unique_ptr<RealTree> _tree;
    std::unique_ptr<TreeClient> _client;
    std::unique_ptr<OperationLog> _log;
    SharedModel _model;
    AnyOperation _any;
    tDeed _deed;
    unsigned int _unexposed;  // rounds that are left until it is exposed
    std::vector<std::string> _last;
};

}  // namespace lumivard::platform::model
