#include "borealis/config/config_files.h"

#include <fstream>
#include <sstream>

#include "borealis/config/doc4410.h"
#include "borealis/platform/platform.h"
#include "common/durable_file.h"

namespace {

// Leaves a set of subtrees out of one save or load: their persistent flag is
// clear while it lives, on every path out.
class Exclusion {
public:
    explicit Exclusion(const std::vector<Configurable*>& nodes) : nodes_(nodes) {
        for (Configurable* node : nodes_) node->set_persistent(false);
    }
    ~Exclusion() {
        for (Configurable* node : nodes_) node->set_persistent(true);
    }
    Exclusion(const Exclusion&) = delete;
    Exclusion& operator=(const Exclusion&) = delete;

private:
    std::vector<Configurable*> nodes_;
};

// Reads `in` into the document without the change dispatch; query answers
// in a file go nowhere.
void ReadPlain(Doc4410& doc, std::istream& in) {
    std::ostringstream answers;
    doc.process(in, answers);
}

}  // namespace

ConfigFiles::ConfigFiles(Doc4410& doc, const Platform& platform)
    : doc_(doc),
      vela_path_(platform.Path("/etc/vela.conf")),
      cal_path_(platform.Path("/etc/cal.conf")),
      factory_path_(platform.Path("/etc/factory.conf")) {}

std::vector<Configurable*> ConfigFiles::VelaConfExclusions() const {
    Config4410& vela = doc_.vela;
    return {&vela.ver,       &vela.name,        &vela.ipaddress,   &vela.serialnumber,
            &vela.cmd,       &vela.cal,         &vela.cpld,        &vela.factory,
            &vela.cfg.clock, &vela.cfg.network, &vela.cfg.linelock};
}

void ConfigFiles::Save(const std::string& path, const Configurable& element,
                       const std::vector<Configurable*>& excluded) {
    std::ostringstream text;
    {
        Exclusion exclusion(excluded);
        text << element << "\n";
    }
    // A file that cannot be written is left as it was.
    WriteFileDurably(path, text.str());
}

void ConfigFiles::SaveVelaConf() { Save(vela_path_, doc_, VelaConfExclusions()); }

void ConfigFiles::SaveCalConf() { Save(cal_path_, doc_.vela.cal, {}); }

void ConfigFiles::SaveFactoryConf() {
    Save(factory_path_, doc_.vela.factory, {&doc_.vela.factory.cmd});
}

void ConfigFiles::LoadFactoryConf() {
    Exclusion exclusion({&doc_.vela.factory.cmd});
    doc_.vela.factory.set_default();
    std::ifstream in(factory_path_);
    if (in) ReadPlain(doc_, in);
}

void ConfigFiles::LoadCalConf() {
    doc_.vela.cal.set_default();
    std::ifstream in(cal_path_);
    if (in) ReadPlain(doc_, in);
}

void ConfigFiles::LoadVelaConf(const std::function<void()>& fill_system_values) {
    Exclusion exclusion(VelaConfExclusions());
    doc_.set_default();
    std::ifstream file(vela_path_);
    if (!file) return;
    // The whole file is taken first: applying it may save it again.
    std::stringstream content;
    content << file.rdbuf();
    file.close();
    fill_system_values();
    std::ostringstream answers;
    doc_.ReadAndDispatch(content, answers);
}
