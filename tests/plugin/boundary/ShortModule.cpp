#include <QLibrary>

#define HOPBOX_ENTRY Q_DECL_EXPORT
#include "plugin/boundary/hopbox_host.h"

#include <cstdlib>

// A module of an earlier form: the plug-in's own, with a table that ends before do_action. Who calls what
// lies behind the end ends the process.
const hopbox_plugin_table* hopbox_plugin(uint32_t version)
{
    static QLibrary module(QStringLiteral(HOPBOX_MODULE));
    static hopbox_plugin_table table;
    const auto entry = reinterpret_cast<hopbox_entry_function>(module.resolve(HOPBOX_ENTRY_NAME));
    const hopbox_plugin_table* const whole = entry == nullptr ? nullptr : entry(version);
    if (whole == nullptr)
        return nullptr;
    table = *whole;
    table.size = offsetof(hopbox_plugin_table, do_action);
    if (qEnvironmentVariableIsSet("TEST_REFUSES_ACTIONS"))  // without a word
        table.open_actions = [](const hopbox_sink*) -> int32_t { return HOPBOX_FAILED; };
    table.do_action = [](int32_t) -> int32_t { std::abort(); };
    table.export_to = [](int32_t, const hopbox_text*, const hopbox_text*, int32_t,
                         const hopbox_sink*) -> int32_t { std::abort(); };
    return &table;
}
