#pragma once

#include "foundation/core/GDateTime.h"
#include "foundation/core/GPathName.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GVariableSubstitution.h"

// How a value of each type is written in a settings file: its text, and the kind of that text, which says
// what variables it may hold. A text that is not such a value gives an empty value; a text that is not a path
// raises. Any thread.
template <typename Value>
struct PrefText;

template <>
struct PrefText<GString>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cString;
    static GString From(GString text) { return text; }
    static GString To(const GString& value) { return value; }
};

template <>
struct PrefText<int32_t>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cString;
    static int32_t From(const GString& text) { return GStringSupport::ToInt32(text); }
    static GString To(int32_t value) { return GStringSupport::FromInt32(value); }
};

template <>
struct PrefText<bool>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cString;
    static bool From(const GString& text) { return GStringSupport::ToBool(text); }
    static GString To(bool value) { return GStringSupport::FromBool(value); }
};

template <>
struct PrefText<double>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cString;
    static double From(const GString& text) { return GStringSupport::ToReal(text); }
    static GString To(double value) { return GStringSupport::FromReal(value); }
};

template <>
struct PrefText<GDateTime>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cString;
    static GDateTime From(const GString& text) { return GDateTime::FromText(text); }
    static GString To(const GDateTime& value) { return value.GetText(); }
};

template <>
struct PrefText<GPathName>
{
    static constexpr auto cKind = GVariableSubstitution::Kind::cPathName;
    static GPathName From(const GString& text) { return GPathName(text); }
    static GString To(const GPathName& value) { return value.GetNativePath(); }
};
