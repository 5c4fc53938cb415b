#ifndef BOREALIS_CONFIG_CONFIG_FILES_H
#define BOREALIS_CONFIG_CONFIG_FILES_H

#include <functional>
#include <string>
#include <vector>

class Configurable;
class Doc4410;
class Platform;

// The document's three files, each holding one share of the tree:
// /etc/vela.conf the user's settings, /etc/cal.conf the calibration,
// /etc/factory.conf the factory constants. A file that cannot be opened
// leaves its share at the defaults (load) or is not written (save); a read
// error inside a file is thrown out of the load (Configurable::Error with
// the document's throw errors set).
class ConfigFiles {
public:
    ConfigFiles(Doc4410& doc, const Platform& platform);

    void SaveVelaConf();
    void SaveCalConf();
    void SaveFactoryConf();

    // Resets the factory constants and reads /etc/factory.conf.
    void LoadFactoryConf();
    // Resets the calibration (history included) and reads /etc/cal.conf.
    void LoadCalConf();
    // Resets the user's settings and, when /etc/vela.conf opens, calls
    // `fill_system_values` and then reads the file with the change dispatch,
    // so that every setting that differs is applied.
    void LoadVelaConf(const std::function<void()>& fill_system_values);

    // The elements that /etc/vela.conf leaves out: the values the system
    // holds, the other two files' shares, and the one-shot commands.
    std::vector<Configurable*> VelaConfExclusions() const;

private:
    void Save(const std::string& path, const Configurable& element,
              const std::vector<Configurable*>& excluded);

    Doc4410& doc_;
    const std::string vela_path_;
    const std::string cal_path_;
    const std::string factory_path_;
};

#endif
