#ifndef BOREALIS_CONFIG_DOC4410_H
#define BOREALIS_CONFIG_DOC4410_H

#include <string>

#include "borealis/config/config_4410.h"
#include "configurable/configurable.h"

// The instrument's whole configuration and state as one document,
// <norvance><vela>...</vela></norvance>. Construction builds the tree with
// its defaults; the files are loaded into it afterwards. The owner clears the
// change marks once it has built the document.
class Doc4410 : public ConfigurableComposite {
public:
    // Told what a read into the document changed, so that the change reaches
    // the analyzer, the platform and the operating system.
    class Listener {
    public:
        virtual ~Listener() = default;
        // The change callbacks are added with the change dispatch.
    };

    Doc4410();

    void SetListener(Listener* listener) { theListener = listener; }
    Listener* GetListener() const { return theListener; }

    Config4410 vela;

private:
    Listener* theListener = nullptr;
};

#endif
