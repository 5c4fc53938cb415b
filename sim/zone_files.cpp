#include "sim/zone_files.h"

#include <dirent.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "sim/file_util.h"

namespace {

struct BuiltInZone {
    const char* name;
    const char* abbreviation;  // of standard time
    std::int32_t utc_offset;   // seconds east of UTC, standard time
    const char* rule;          // the POSIX TZ text that governs every later date
};

const BuiltInZone kBuiltInZones[] = {
    {"UTC", "UTC", 0, "UTC0"},
    {"Europe/Berlin", "CET", 3600, "CET-1CEST,M3.5.0,M10.5.0/3"},
    {"Europe/London", "GMT", 0, "GMT0BST,M3.5.0/1,M10.5.0"},
    {"America/New_York", "EST", -18000, "EST5EDT,M3.2.0,M11.1.0"},
    {"Asia/Tokyo", "JST", 32400, "JST-9"},
    {"Australia/Sydney", "AEST", 36000, "AEST-10AEDT,M10.1.0,M4.1.0/3"},
};

void PutBig(std::string& out, std::uint64_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i)
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// One block of a compiled zone file: header, one transition at 1970 into
// the one local time type, and its abbreviation. The transition is there so
// that the library follows the rule text for every date after it.
void PutZoneBlock(std::string& out, const BuiltInZone& zone, int time_bytes) {
    const std::string abbreviation = std::string(zone.abbreviation) + '\0';
    out += "TZif2";
    out.append(15, '\0');
    for (std::uint32_t count :
         {0u, 0u, 0u, 1u, 1u, static_cast<std::uint32_t>(abbreviation.size())})
        PutBig(out, count, 4);
    PutBig(out, 0, time_bytes);  // the transition time
    out.push_back('\0');         // its type
    PutBig(out, static_cast<std::uint32_t>(zone.utc_offset), 4);
    out.push_back('\0');  // not daylight saving time
    out.push_back('\0');  // abbreviation index
    out += abbreviation;
}

std::string CompiledZone(const BuiltInZone& zone) {
    std::string file;
    PutZoneBlock(file, zone, 4);
    PutZoneBlock(file, zone, 8);
    return file + "\n" + zone.rule + "\n";
}

bool IsCompiledZone(const std::string& content) { return content.compare(0, 4, "TZif") == 0; }

std::vector<std::string> FolderEntries(const std::string& folder) {
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir))
        if (entry->d_name[0] != '.') names.push_back(entry->d_name);
    ::closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

// Copies the compiled zones under `from` to `to`, following links; other
// files, and the folders of other zone flavours, stay behind. Returns the
// number of zones copied.
int CopyZones(const std::string& from, const std::string& to) {
    int copied = 0;
    for (const std::string& name : FolderEntries(from)) {
        if (name == "posix" || name == "right" || name == "localtime") continue;
        const std::string source = from + "/" + name;
        std::string content;
        if (IsFolder(source))
            copied += CopyZones(source, to + "/" + name);
        else if (ReadWholeFile(source, content) && IsCompiledZone(content)) {
            WriteNewFile(to + "/" + name, content);
            ++copied;
        }
    }
    return copied;
}

}  // namespace

void InstallZones(const std::string& zone_dir, const std::string& localtime,
                  const std::string& host_zones) {
    std::string utc;
    if (!ReadWholeFile(host_zones + "/UTC", utc) || !IsCompiledZone(utc))
        utc = CompiledZone(kBuiltInZones[0]);
    WriteNewFile(localtime, utc);

    if (IsFolder(zone_dir)) return;
    // The posix flavour is the one the daemon reads; a host without it has
    // the same zones at the top of its zone folder.
    const std::string posix = host_zones + "/posix";
    if (CopyZones(IsFolder(posix) ? posix : host_zones, zone_dir) > 0) return;
    for (const BuiltInZone& zone : kBuiltInZones)
        WriteNewFile(zone_dir + "/" + zone.name, CompiledZone(zone));
}
