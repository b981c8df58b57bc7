#include <atomic>
#include <barrier>
#include <memory>
#include <thread>

#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class FrontEndThreads : public ClientTest {
protected:
    static constexpr int kThreads = 4;

    /// Runs `work(number)` on several threads that start it together.
    template <class Work>
    static void together(Work work) {
        std::barrier start(kThreads);
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) {
            threads.emplace_back([&start, &work, number] {
                start.arrive_and_wait();
                work(number);
            });
        }
        for (std::thread& thread : threads) thread.join();
    }
};
LVP_ON_EACH_STORE(FrontEndThreads);

// The results are kept until the threads are done: what goes on after the front end has been left is the affair of the
// store's guard, and one of the stores has none.
TEST_P(FrontEndThreads, MakeOneRootAndOneGroupOfAnEmptyStore) {
    for (int round = 0; round < 50; ++round) {
        const auto shared = GetParam().make();
        std::vector<SharedPtr<IContainer>> results(kThreads);
        together([&](int number) {
            results[static_cast<std::size_t>(number)] = IContainerFrontEnd::toplevel(shared.get(), L"model");
        });
        const auto groups = stored::children(shared.get(), 0);
        ASSERT_EQ(1u, groups.size());
        EXPECT_EQ(static_cast<unsigned int>(kThreads), stored::refs(shared.get(), groups[0]));
        for (const auto& result : results) EXPECT_EQ(L"model", text(result->tag()));
    }
}

TEST_P(FrontEndThreads, MakeAGroupEachUnderTheirOwnNames) {
    const auto shared = GetParam().make();
    std::vector<SharedPtr<IContainer>> results(kThreads);
    together([&](int number) {
        const std::wstring name = L"model" + std::to_wstring(number);
        results[static_cast<std::size_t>(number)] = IContainerFrontEnd::toplevel(shared.get(), name.c_str());
    });
    EXPECT_EQ(static_cast<std::size_t>(kThreads), stored::children(shared.get(), 0).size());
    for (int number = 0; number < kThreads; ++number) {
        EXPECT_EQ(L"model" + std::to_wstring(number), text(results[static_cast<std::size_t>(number)]->tag()));
    }
}

TEST_P(FrontEndThreads, WorkInStoresOfTheirOwn) {
    together([](int) {
        const auto own = GetParam().make();
        for (int round = 0; round < 20; ++round) {
            const auto model = IContainerFrontEnd::toplevel(own.get(), L"model");
            model->create(IContainer::kGroup, (L"child" + std::to_wstring(round)).c_str(), kNoSchema);
        }
        const auto model = IContainerFrontEnd::find(own.get(), L"model");
        EXPECT_EQ(20u, names(*model->containers()).size());
    });
}

/// A store that looks, whenever its guard is taken, whether other threads hold the guard of a store of this kind.
class MeetingStore final : public IDataStore {
public:
    MeetingStore(std::unique_ptr<IDataStore> under, std::atomic<int>& inside, std::atomic<int>& most)
        : _under(std::move(under)), _inside(inside), _most(most) {}

    ILock* lock() override { return new Guard(_inside, _most); }
    void flush() override { _under->flush(); }
    void version(unsigned int number) override { _under->version(number); }
    unsigned int version() const override { return _under->version(); }
    unsigned long long extent() override { return _under->extent(); }
    unsigned int create(const void* data, unsigned int size) override { return _under->create(data, size); }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _under->append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _under->update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under->size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override { _under->read(offset, buffer, size); }
    void erase(unsigned int offset) override { _under->erase(offset); }

private:
    /// Gives the others a good many turns to come in too.
    class Guard final : public ILock {
    public:
        Guard(std::atomic<int>& inside, std::atomic<int>& most) : _inside(inside) {
            int now = ++_inside;
            for (int turn = 0; turn < 300 && now < 2; ++turn) {
                std::this_thread::yield();
                now = _inside;
            }
            if (now > most) most = now;
        }
        ~Guard() override { --_inside; }

    private:
        std::atomic<int>& _inside;
    };

    std::unique_ptr<IDataStore> _under;
    std::atomic<int>& _inside;
    std::atomic<int>& _most;
};

TEST_P(FrontEndThreads, AreLetInOneByOneWhateverTheirStores) {
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    std::vector<std::unique_ptr<IDataStore>> own;
    for (int number = 0; number < kThreads; ++number) {
        own.push_back(std::make_unique<MeetingStore>(GetParam().make(), inside, most));
    }
    std::vector<SharedPtr<IContainer>> results(2 * kThreads);
    together([&](int number) {
        IDataStore* store = own[static_cast<std::size_t>(number)].get();
        const auto place = static_cast<std::size_t>(2 * number);
        results[place] = IContainerFrontEnd::toplevel(store, L"model");
        results[place + 1] = IContainerFrontEnd::find(store, L"model");
    });
    EXPECT_EQ(1, most);
}

/// One store that several threads share through its guard.
TEST(Guard, MakesEachCallOneStepForThreadsThatShareAStore) {
    const auto store = lumivard::platform::stores::memory();
    const auto top = IContainerFrontEnd::toplevel(store.get(), L"top");
    for (int number = 0; number < 4; ++number) {
        top->create(IContainer::kGroup, (L"own" + std::to_wstring(number)).c_str(), kNoSchema);
    }
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&store, number] {
            const std::wstring path = L"top.own" + std::to_wstring(number);
            const auto own = IContainerFrontEnd::find(store.get(), path.c_str());
            for (int round = 0; round < 50; ++round) {
                const std::wstring name = L"value" + std::to_wstring(round);
                const auto value = own->create(name.c_str(), metadata::kInt32);
                value->set(&round, 0, 1);
                const auto filter = own->properties();
                while (filter->next()) {
                }
            }
            own->destroy(L"value0");
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int number = 0; number < 4; ++number) {
        const auto own = top->container((L"own" + std::to_wstring(number)).c_str());
        EXPECT_EQ(49u, names(*own->properties()).size());
        EXPECT_EQ(std::vector<int>{49}, values<int>(asPrimitive(own->property(L"value49"))));
    }
}

}  // namespace
