#include "borealis/config/config_factory.h"

#include <initializer_list>

namespace {

// Range of the 16-bit registers the constants are written to.
constexpr int kWordMax = 65535;
constexpr int kSignedWordMin = -32768;
constexpr int kSignedWordMax = 32767;

}  // namespace

ConfigFactoryCmd::ConfigFactoryCmd(const std::string& name)
    : ConfigurableComposite(name), commit("commit", false), rollback("rollback", false) {
    add_child(&commit);
    add_child(&rollback);
}

ConfigFactory::ConfigFactory(const std::string& name)
    : ConfigurableComposite(name),
      serialnumber("serialnumber", "ch4-XXXX"),
      lasermoddepth("lasermoddepth", 7000),
      laserstarttemp("laserstarttemp", 22, 0, 50, false),
      blockstarttemp("blockstarttemp", 30, 0, 50, false),
      blockstarttemplowrange("blockstarttemplowrange", 5, 0, 50, false),
      rssidropthresh("rssidropthresh", 1, 0, 100, false),
      pzero("pzero", 0),
      pspan("pspan", 1),
      samplegain("samplegain", 0, 0),
      refgain("refgain", 0, 0),
      mirrorpos("mirrorpos", 0, 0, 1023),
      offset1("offset1", 0, 0, kWordMax),
      delta1("delta1", 0, 0, kWordMax),
      offset2("offset2", 0, 0, kWordMax),
      delta2("delta2", 0, 0, kWordMax),
      dither("dither", 0, 0, kWordMax),
      sampledcoffset("sampledcoffset", 0, 0, kWordMax),
      sampleacoffset("sampleacoffset", 0, kSignedWordMin, kSignedWordMax),
      sampleopticaloffset("sampleopticaloffset", 0, kSignedWordMin, kSignedWordMax),
      cmd("cmd") {
    for (Configurable* constant : std::initializer_list<Configurable*>{&serialnumber,
                                                                       &lasermoddepth,
                                                                       &laserstarttemp,
                                                                       &blockstarttemp,
                                                                       &blockstarttemplowrange,
                                                                       &rssidropthresh,
                                                                       &pzero,
                                                                       &pspan,
                                                                       &samplegain,
                                                                       &refgain,
                                                                       &mirrorpos,
                                                                       &offset1,
                                                                       &delta1,
                                                                       &offset2,
                                                                       &delta2,
                                                                       &dither,
                                                                       &sampledcoffset,
                                                                       &sampleacoffset,
                                                                       &sampleopticaloffset,
                                                                       &cmd}) {
        add_child(constant);
    }
}

ConfigCPLDMotor::ConfigCPLDMotor(const std::string& name)
    : ConfigurableComposite(name),
      control("control", 0),
      desired_pos("desired_pos", 0),
      actual_pos("actual_pos", 0) {
    add_child(&control);
    add_child(&desired_pos);
    add_child(&actual_pos);
}

ConfigCPLD::ConfigCPLD(const std::string& name)
    : ConfigurableComposite(name), ver("ver", ""), motor("motor") {
    add_child(&ver);
    add_child(&motor);
}
