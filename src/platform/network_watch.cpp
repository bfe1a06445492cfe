#include "platform/network_watch.h"

#include <QNetworkInformation>

namespace tessellar {

namespace {

class SystemNetworkWatch final : public QObject, public NetworkWatch {
public:
    SystemNetworkWatch() {
        if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
            return;
        const QNetworkInformation* system = QNetworkInformation::instance();
        _isOnline = isOnline(system->reachability());
        connect(system, &QNetworkInformation::reachabilityChanged, this,
                [this](QNetworkInformation::Reachability reachability) {
                    const bool was = std::exchange(_isOnline, isOnline(reachability));
                    if (_isOnline && !was)
                        returned.notify();
                });
    }

private:
    static bool isOnline(QNetworkInformation::Reachability reachability) {
        return reachability == QNetworkInformation::Reachability::Online;
    }

    bool _isOnline = false;
};

} // namespace

std::unique_ptr<NetworkWatch> makeNetworkWatch() { return std::make_unique<SystemNetworkWatch>(); }

} // namespace tessellar
