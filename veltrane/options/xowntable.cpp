#include "veltrane/options/xowntable.h"

#include "veltrane/foundation/xraise.h"
#include "veltrane/options/detail/optionregistry.h"

namespace veltrane {

using namespace detail;

namespace {

void Check(const OwnTable& table) {
    constexpr XSite site = XSource{L".\\xowntable"}(L"OwnOptions::OwnOptions");
    if (OptionRegistry::HasStores()) {
        throw MakeError(site, L"Options can be registered only before a store is made!");
    }
    const LibraryRows known = OptionRegistry::Library();
    const LibraryRows& library = table.library.HasAll() ? known : table.library;
    if (!known.HasAll() && library != known) {
        throw MakeError(site, L"Another table has chosen other options of the library!");
    }
    std::vector<TableRows> tables = OptionRegistry::Tables();
    tables.front().present = library.View();
    tables.push_back({table.options, table.sections});
    // Rows that are there may need what a choice leaves out.
    const std::size_t first = library == known ? tables.size() : 2;
    try {
        for (std::size_t count = first; count <= tables.size(); ++count) {
            CheckOwnTables(Tables{tables}.first(count));
        }
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
