#include "check/Examination.h"

#include "check/GraphRules.h"
#include "check/LiveRules.h"
#include "check/Paths.h"
#include "check/RecordRules.h"
#include "check/ReferenceRules.h"
#include "check/Tree.h"

namespace lumivard::platform::data::Check {

Report Examination::run() {
    Report report;
    if (_case.store.extent() == 0) return report;
    takeCensus();
    noteLists(_case);
    const unsigned int top = _case.census.find(0);
    if (judgeTop(_case, top)) Tree(_case).grow(top);
    judgeReferences(_case);
    report.depth = judgeTree(_case);
    judgeCounts(_case);
    _unattached = judgeUnattached(_case);
    count(report);
    _case.findings.moveTo(report, Paths(_case));
    return report;
}

std::vector<unsigned int> Examination::unreadable() const {
    std::vector<unsigned int> offsets;
    for (unsigned int number = 0; number < _case.census.size(); ++number) {
        const tNode& node = _case.census[number];
        if (!node.readable) offsets.push_back(node.offset);
    }
    return offsets;
}

void Examination::takeCensus() {
    Census& census = _case.census;
    census.search(_case.store, _case.options.whole);
    // What a record names may lie where nobody looked.
    for (unsigned int number = 0; number < census.size(); ++number) {
        judgeRecord(_case, number);
        if (census[number].readable && census[number].kind == Record::kOffsets) {
            for (const unsigned int entry : _case.entries(number)) census.meet(_case.store, entry);
        }
        const tNode node = census[number];
        for (const unsigned int named : {node.children, node.locale, node.defaults}) census.meet(_case.store, named);
    }
    census.settle();
}

void Examination::count(Report& report) const {
    const Census& census = _case.census;
    report.searched = census.searched();
    report.records = census.size();
    for (unsigned int number = 0; number < census.size(); ++number) {
        const tNode& node = census[number];
        report.bytes += node.size;
        if (node.readable && node.kind < Report::kKinds) {
            ++report.byKind[node.kind];
            report.bytesByKind[node.kind] += node.size;
        }
        if (node.isEntity() && node.refs != 0) {
            report.live += node.refs;
            ++report.liveRecords;
        }
        if (node.reached) {
            ++report.reached;
            report.reachedBytes += node.size;
        } else if (node.readable) {
            ++report.unattached;
            report.unattachedBytes += node.size;
        }
    }
}

}  // namespace lumivard::platform::data::Check
