#include "tools/tavlynctl/trouble/doctor_nodes_linux.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "tools/tavlynctl/reach/nodes_linux.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kRulesFile = "70-tavlyn.rules";
constexpr const char* kReload = "sudo udevadm control --reload && sudo udevadm trigger";

// Where the rules are; empty if they are not installed.
std::string RulesPath(const UdevPlaces& places) {
  for (const std::string& folder : places.rules) {
    const std::filesystem::path path = std::filesystem::path(folder) / kRulesFile;
    std::error_code unknown;
    if (std::filesystem::exists(path, unknown)) return path.string();
  }
  return {};
}

std::string InstallLine() {
  return std::string("sudo cp packaging/") + kRulesFile + " /etc/udev/rules.d/ && " + kReload;
}

// udev notes the tags of a node when it has gone through its rules: "G:uaccess".
bool IsTagged(const UdevPlaces& places, const std::string& node, const char* kind) {
  struct stat status {};
  if (stat(node.c_str(), &status) != 0) return false;
  const std::string number =
      kind + std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
  std::ifstream notes(std::filesystem::path(places.state) / "data" / number);
  for (std::string line; std::getline(notes, line);) {
    if (line == "G:uaccess") return true;
  }
  return false;
}

// The kernel's form: a version, then entries of a tag, rights and an ID, lowest bytes first.
std::string AclOf(const std::string& node) {
  constexpr std::size_t kHead = 4;
  constexpr std::size_t kEntry = 8;
  constexpr unsigned kUser = 2;
  constexpr unsigned kGroup = 8;
  std::array<unsigned char, 1024> acl{};
  const ssize_t size = getxattr(node.c_str(), "system.posix_acl_access", acl.data(), acl.size());
  const auto byte = [&](std::size_t at) { return static_cast<unsigned>(acl[at]); };
  std::string text;
  for (std::size_t at = kHead; static_cast<ssize_t>(at + kEntry) <= size; at += kEntry) {
    const unsigned tag = byte(at) | byte(at + 1) << 8U;
    if (tag != kUser && tag != kGroup) continue;
    const unsigned rights = byte(at + 2);
    const unsigned id = byte(at + 4) | byte(at + 5) << 8U | byte(at + 6) << 16U | byte(at + 7) << 24U;
    text += std::string(", ACL ") + (tag == kUser ? "user " : "group ") + std::to_string(id) + " " +
            ((rights & 4U) != 0 ? "r" : "-") + ((rights & 2U) != 0 ? "w" : "-");
  }
  return text;
}

struct Node {
  std::string path;
  const char* kind;  // of udev's note of it: "c" of a character device
  bool isBulk;
};

std::vector<Node> KnownNodes(const UdevPlaces& places) {
  std::vector<Node> nodes;
  for (const std::string& path : KnownHidNodes(places.hidrawClass, places.hidNodes))
    nodes.push_back({path, "c", false});
  for (const std::string& path : KnownBulkNodes(places.usbDevices, places.usbNodes))
    nodes.push_back({path, "c", true});
  return nodes;
}

Finding OfNode(const UdevPlaces& places, const Node& node, bool hasRules) {
  constexpr const char* kStep = "node";
  const std::string text = node.path + ", " + ModeOf(node.path) + AclOf(node.path);
  if (IsForbidden(node.path)) {
    const bool isTagged = IsTagged(places, node.path, node.kind);
    const std::string advice = !hasRules   ? InstallLine()
                               : !isTagged ? kReload
                                           : "sudo setfacl -m u:$USER:rw " + node.path;
    const char* why = isTagged
                          ? ": this user may not open it, being not the one who is logged in at the machine; "
                            "the line helps until it is unplugged"
                          : ": this user may not open it";
    return Problem(kStep, kNoPermission, text + why, advice);
  }
  const std::string holders = HoldersOf(node.path);
  if (holders.empty()) return Fine(kStep, text);
  if (node.isBulk)
    return Problem(kStep, kNoPermission, text + ": held by " + holders, LineForHolders(holders));
  return Warning(kStep,
                 text + ": also open in " + holders + ", and two that ask can get each other's replies",
                 LineForHolders(holders));
}

Finding OfRules(const UdevPlaces& places, const std::vector<Node>& nodes, const std::string& path) {
  constexpr const char* kStep = "udev rules";
  if (path.empty()) return Warning(kStep, "not installed; only root may then open a device", InstallLine());
  const bool allTagged =
      std::ranges::all_of(nodes, [&](const Node& one) { return IsTagged(places, one.path, one.kind); });
  if (allTagged) return Fine(kStep, path + (nodes.empty() ? "" : ", loaded"));
  return Warning(kStep, path + ", not yet used for the devices that are there", kReload);
}

}  // namespace

std::string LineForHolders(const std::string& holders) {
  constexpr std::string_view kNumber = "(process ";
  std::string numbers;
  for (std::size_t at = holders.find(kNumber); at != std::string::npos; at = holders.find(kNumber, at)) {
    at += kNumber.size();
    numbers += (numbers.empty() ? "" : ",") + holders.substr(at, holders.find(')', at) - at);
  }
  return numbers.empty() ? "sudo tavlynctl doctor" : "ps -f -p " + numbers;
}

Findings NodeFindings(const UdevPlaces& places) {
  const std::vector<Node> nodes = KnownNodes(places);
  const std::string rules = RulesPath(places);
  Findings findings = {OfRules(places, nodes, rules)};
  for (const Node& node : nodes) findings.push_back(OfNode(places, node, !rules.empty()));
  if (nodes.empty()) findings.push_back(Fine("node", "no device of a known identity is on USB"));
  return findings;
}

void LookAtNodes(Findings& findings) {
  const Findings found = NodeFindings({});
  findings.insert(findings.end(), found.begin(), found.end());
}

}  // namespace tavlyn::ctl
