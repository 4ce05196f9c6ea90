#include "veltrane/options/xowntable.h"

#include "veltrane/foundation/xraise.h"
#include "veltrane/options/detail/optionregistry.h"

namespace veltrane {

using namespace detail;

namespace {

constexpr XSource Here{L".\\xowntable"};

void Check(const OwnTable& table) {
    constexpr XSite site = Here(L"OwnOptions::OwnOptions");
    if (OptionRegistry::HasStores()) {
        throw MakeError(site, L"Options can be registered only before a store is made!");
    }
    std::vector<TableRows> tables = OptionRegistry::Tables();
    tables.push_back({table.options, table.sections});
    try {
        CheckOwnTables(tables);
    } catch (const RowRefused& refused) {
        throw MakeError(site, refused.message, refused.name);
    } catch (const RowsRefused& refused) {
        throw MakeError(site, refused.message, refused.name, refused.other);
    }
}

}  // namespace

OwnOptions::OwnOptions(const OwnTable& table) {
    Check(table);
    OptionRegistry::Add(this, table);
}

OwnOptions::~OwnOptions() {
    OptionRegistry::Remove(this);
}

}  // namespace veltrane
