#include "borealis/hub/analyzer_settings.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "borealis/config/doc4410.h"
#include "borealis/dsp/dsp_device.h"
#include "borealis/platform/platform.h"
#include "borealis/upkeep/washme.h"

namespace {

// Choice indexes of the line-lock controls.
enum BlockControl { BLOCK_OFF = 0, BLOCK_ON = 1, BLOCK_DACCOUNT = 2 };
enum CoolerControl { COOLER_AUTO = 0, COOLER_MANUAL = 1, COOLER_DACCOUNT = 2 };
enum TempRange { RANGE_LOW = 0, RANGE_HIGH = 1 };

const char kDeviceFolder[] = "/sys/devices/platform/io4410/";

std::uint16_t Low16(int value) { return static_cast<std::uint16_t>(value); }

}  // namespace

AnalyzerSettings::AnalyzerSettings(Doc4410& doc, DSPDevice& dsp, WashMe& mirror, Platform& platform,
                                   bool debug)
    : doc_(doc), dsp_(dsp), mirror_(mirror), platform_(platform), debug_(debug) {}

void AnalyzerSettings::DeriveLineLockTargets() {
    const ConfigFactory& factory = doc_.vela.factory;
    ConfigLineLock& linelock = doc_.vela.cfg.linelock;
    linelock.lasercooler.control.set(COOLER_AUTO);
    linelock.lasercooler.temp.set(factory.laserstarttemp.value());
    linelock.laserblock.control.set(BLOCK_ON);
    linelock.laserblock.temp.set(factory.blockstarttemp.value());
}

void AnalyzerSettings::ApplyTempRange(int temprange) {
    const ConfigFactory& factory = doc_.vela.factory;
    ConfigLaserBlock& block = doc_.vela.cfg.linelock.laserblock;
    block.control.set(BLOCK_ON);
    block.temp.set(temprange == RANGE_LOW ? factory.blockstarttemplowrange.value()
                                          : factory.blockstarttemp.value());
    SendLineLockControls();
}

void AnalyzerSettings::SendLineLockControls() {
    const ConfigLaserBlock& block = doc_.vela.cfg.linelock.laserblock;
    if (block.has_changed()) {
        switch (block.control.value()) {
        case BLOCK_ON: dsp_.RegBlockTemp(block.temp.value()); break;
        case BLOCK_DACCOUNT: dsp_.SetBlockDrive(Low16(block.daccount.value())); break;
        default: dsp_.UnregBlockTemp(); break;
        }
    }
    const ConfigLaserCooler& cooler = doc_.vela.cfg.linelock.lasercooler;
    if (cooler.has_changed()) {
        switch (cooler.control.value()) {
        case COOLER_MANUAL: dsp_.LockLaserTemp(cooler.temp.value()); break;
        case COOLER_DACCOUNT: dsp_.SetLaserDrive(Low16(cooler.daccount.value())); break;
        default: dsp_.ReleaseLaserTemp(); break;
        }
    }
}

void AnalyzerSettings::SendLineLockSetup() {
    const ConfigFactory& factory = doc_.vela.factory;
    DSPLineLockSetup setup;
    setup.laser_start_temperature = factory.laserstarttemp.value();
    setup.sample_gain = Low16(factory.samplegain.value());
    setup.reference_gain = Low16(factory.refgain.value());
    setup.modulation_depth = Low16(factory.lasermoddepth.value());
    setup.dither = Low16(factory.dither.value());
    dsp_.SendLineLock(setup);
}

void AnalyzerSettings::SendOffsets() {
    const ConfigFactory& factory = doc_.vela.factory;
    dsp_.SetOffsets(static_cast<std::int16_t>(factory.sampleacoffset.value()),
                    Low16(factory.sampledcoffset.value()),
                    Low16(factory.sampleopticaloffset.value()));
}

void AnalyzerSettings::WriteDeviceFiles() {
    const ConfigFactory& factory = doc_.vela.factory;
    for (const ConfigurableInteger* value :
         {&factory.offset1, &factory.delta1, &factory.offset2, &factory.delta2}) {
        const std::string path = platform_.Path(kDeviceFolder + value->name());
        platform_.AsSuperUser([&] {
            std::ofstream file(path, std::ios::trunc);
            if (!(file << value->value()) || !file.flush())
                throw std::runtime_error("Unable to write to: " + path);
        });
    }
}

void AnalyzerSettings::PrintFactoryConstants() const {
    const ConfigFactory& f = doc_.vela.factory;
    std::cout << "CH4:start temp=" << f.laserstarttemp.value()
              << " mod depth=" << Low16(f.lasermoddepth.value()) << " pzero=" << f.pzero.value()
              << " pspan=" << f.pspan.value() << " samplegain=" << Low16(f.samplegain.value())
              << " refgain=" << Low16(f.refgain.value()) << " offset1=" << f.offset1.value()
              << " delta1=" << f.delta1.value() << " ac_offset=" << f.sampleacoffset.value()
              << " dc_offset=" << f.sampledcoffset.value()
              << " optical_offset=" << f.sampleopticaloffset.value() << std::endl;
}

void AnalyzerSettings::SendFactoryConstants() {
    if (debug_) PrintFactoryConstants();
    SendLineLockSetup();
    dsp_.SetDropThreshold(doc_.vela.factory.rssidropthresh.value());
    SendOffsets();
    WriteDeviceFiles();
    mirror_.SetMirrorPosition(doc_.vela.factory.mirrorpos.value());
}

void AnalyzerSettings::SendChangedFactoryConstants() {
    const ConfigFactory& f = doc_.vela.factory;
    auto changed = [](std::initializer_list<const Configurable*> elements) {
        for (const Configurable* element : elements)
            if (element->has_changed()) return true;
        return false;
    };
    if (changed({&f.lasermoddepth, &f.laserstarttemp, &f.samplegain, &f.refgain, &f.dither}))
        SendLineLockSetup();
    if (f.rssidropthresh.has_changed()) dsp_.SetDropThreshold(f.rssidropthresh.value());
    if (changed({&f.sampledcoffset, &f.sampleacoffset, &f.sampleopticaloffset})) SendOffsets();
    if (changed({&f.offset1, &f.delta1, &f.offset2, &f.delta2})) WriteDeviceFiles();
    if (f.mirrorpos.has_changed()) mirror_.SetMirrorPosition(f.mirrorpos.value());
}
