#include "source_spec.h"

#include "host_error.h"
#include "host_platform.h"

namespace zrhost {

namespace {

constexpr double kMaxFps = 240;

struct KindName
{
    SourceKind kind;
    std::string_view name;
};

constexpr KindName kKinds[] = {
    {SourceKind::None, "none"},
    {SourceKind::Synthetic, "synthetic"},
    {SourceKind::Y4m, "y4m"},
};

SourceKind parseKind(std::string_view name, const std::string& what)
{
    for (const KindName& kind : kKinds) {
        if (kind.name == name)
            return kind.kind;
    }
    throw HostError(what + ": unknown kind '" + std::string(name)
                    + "' (none, synthetic or y4m:FILE)");
}

} // namespace

SourceSpec SourceSpec::parse(std::string_view text)
{
    const std::string what = "source '" + std::string(text) + "'";
    SourceSpec spec;
    const std::size_t colon = text.find(':');
    std::string_view head = text.substr(0, colon);
    if (colon != std::string_view::npos)
        spec.file = text.substr(colon + 1);

    if (const std::size_t slash = head.find('/'); slash != std::string_view::npos) {
        spec.fps = parseNumber(head.substr(slash + 1), 0.1, kMaxFps, what);
        head = head.substr(0, slash);
    }
    if (const std::size_t at = head.find('@'); at != std::string_view::npos) {
        spec.size = parseSize(head.substr(at + 1), what);
        head = head.substr(0, at);
    }
    spec.kind = parseKind(head, what);
    if ((spec.kind == SourceKind::Y4m) == spec.file.empty())
        throw HostError(what + (spec.file.empty() ? ": no file given" : ": takes no file"));
    if (spec.kind == SourceKind::Y4m && spec.size.width != 0)
        throw HostError(what + ": a y4m source has the size of its file");
    return spec;
}

void SourceSpec::checkFile() const
{
    if (kind != SourceKind::Y4m)
        return;
    if (const std::string problem = whyUnreadable(file); !problem.empty())
        throw HostError("cannot read '" + file + "': " + problem);
}

std::string SourceSpec::toText() const
{
    for (const KindName& name : kKinds) {
        if (name.kind == kind)
            return std::string(name.name) + (file.empty() ? "" : ":" + file);
    }
    return {};
}

} // namespace zrhost
