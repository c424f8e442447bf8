// Writes the host's Java view of the engine's tables, so that the two cannot
// drift apart: the host property ids with their template keys, which ids
// each component type carries, the type names, and the fixed string slots.
//
//     host-tables JAVA_FILE LISTING_FILE
//
// JAVA_FILE gets the class com.fernwick.android.ad.mero.preview.PropertyTable;
// LISTING_FILE the same facts as plain lines ("id name key"), which a JVM test
// compares with the compiled class.
#include <cctype>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <string_view>

#include "render/NodeKinds.h"
#include "render/PropertyTable.h"
#include "render/ViewSlots.h"

namespace {

// "AnchorPointX" -> "ANCHOR_POINT_X"
std::string constantName(std::string_view name)
{
    std::string constant;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (i > 0 && std::isupper(c) != 0 && std::islower(static_cast<unsigned char>(name[i - 1])) != 0) {
            constant += '_';
        }
        constant += static_cast<char>(std::toupper(c));
    }
    return constant;
}

std::set<int> commonIds()
{
    std::set<int> ids;
    for (Mero::Property property : Mero::commonProperties()) {
        if (Mero::info(property).hostId >= 0) {
            ids.insert(Mero::info(property).hostId);
        }
    }
    return ids;
}

void writeJava(std::ostream& out)
{
    out << R"(package com.fernwick.android.ad.mero.preview;

import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;

/**
 * The host contract's tables, written by the build from the engine's own
 * (tools/host-tables.cpp): host property ids with their template keys, the
 * ids each component type carries in createComponent's slot arrays, and the
 * component type names. The slot of an id follows from its range: 0-99
 * float, 100-199 int, 200-299 String, 300-399 boolean, each at id mod 100.
 */
public final class PropertyTable {
    private PropertyTable() {}

)";
    for (const Mero::PropertyInfo& row : Mero::kProperties) {
        if (row.hostId >= 0) {
            out << "    public static final int " << constantName(row.name) << " = " << row.hostId << ";\n";
        }
    }
    out << "\n    /** Fixed String slots that are not property ids. */\n"
        << "    public static final int SLOT_ID = " << Mero::ViewSlots::kNodeIdSlot
        << ", SLOT_ON_CLICK = " << Mero::ViewSlots::kOnClickSlot
        << ", SLOT_BUSINESS_DATA = " << Mero::ViewSlots::kBusinessDataSlot
        << ", SLOT_LOOP_ANIMATION = " << Mero::ViewSlots::kLoopAnimationSlot << ";\n\n";
    out << "    private static final Map<Integer, String> KEY_BY_ID = new HashMap<>();\n"
        << "    private static final Map<Integer, String> NAME_BY_TYPE = new HashMap<>();\n"
        << "    private static final Map<Integer, List<Integer>> IDS_BY_TYPE = new HashMap<>();\n\n"
        << "    private static void type(int code, String name, int... ids) {\n"
        << "        NAME_BY_TYPE.put(code, name);\n"
        << "        IDS_BY_TYPE.put(code, Collections.unmodifiableList(new ArrayList<>(new TreeSet<>(\n"
        << "                java.util.stream.IntStream.of(ids).boxed().toList()))));\n"
        << "    }\n\n"
        << "    static {\n";
    for (const Mero::PropertyInfo& row : Mero::kProperties) {
        if (row.hostId >= 0) {
            out << "        KEY_BY_ID.put(" << constantName(row.name) << ", \"" << row.key << "\");\n";
        }
    }
    const std::set<int> common = commonIds();
    for (const Mero::NodeKind& kind : Mero::nodeKinds()) {
        std::set<int> ids = common;
        for (Mero::Property property : kind.properties) {
            if (Mero::info(property).hostId >= 0) {
                ids.insert(Mero::info(property).hostId);
            }
        }
        out << "        type(" << kind.code << ", \"" << kind.name << "\"";
        for (int id : ids) {
            out << ", " << id;
        }
        out << ");\n";
    }
    out << R"(    }

    /** The template key of a host property id; "property<id>" for an id outside the table. */
    public static String key(int propertyId) {
        return KEY_BY_ID.getOrDefault(propertyId, "property" + propertyId);
    }

    /** The ids a component of this type carries, ascending; an unknown type carries the common ones. */
    public static List<Integer> idsOf(int type) {
        return IDS_BY_TYPE.getOrDefault(type, IDS_BY_TYPE.get(0));
    }

    /** "flex", "text", ...; "type<code>" for a code outside the table. */
    public static String typeName(int type) {
        return NAME_BY_TYPE.getOrDefault(type, "type" + type);
    }

    public static boolean isFloatSlot(int propertyId) { return propertyId < 100; }
    public static boolean isIntSlot(int propertyId) { return propertyId >= 100 && propertyId < 200; }
    public static boolean isStringSlot(int propertyId) { return propertyId >= 200 && propertyId < 300; }
    public static boolean isBooleanSlot(int propertyId) { return propertyId >= 300 && propertyId < 400; }
}
)";
}

void writeListing(std::ostream& out)
{
    for (const Mero::PropertyInfo& row : Mero::kProperties) {
        if (row.hostId >= 0) {
            out << "property " << row.hostId << ' ' << constantName(row.name) << ' ' << row.key << '\n';
        }
    }
    for (const Mero::NodeKind& kind : Mero::nodeKinds()) {
        out << "type " << kind.code << ' ' << kind.name;
        for (Mero::Property property : kind.properties) {
            if (Mero::info(property).hostId >= 0) {
                out << ' ' << Mero::info(property).hostId;
            }
        }
        out << '\n';
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: host-tables JAVA_FILE LISTING_FILE\n";
        return 2;
    }
    std::ofstream java(argv[1]);
    std::ofstream listing(argv[2]);
    writeJava(java);
    writeListing(listing);
    return java && listing ? 0 : 1;
}
