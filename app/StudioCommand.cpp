#include "app/StudioCommand.h"

#include "app/Interrupt.h"
#include "app/SceneDrawings.h"
#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#ifdef ORBEL_HAVE_STUDIO
#include "studio/Studio.h"
#endif

#include <chrono>
#include <csignal>
#include <ostream>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::app {

#ifdef ORBEL_HAVE_STUDIO

namespace {

/// Has the desktop open the address. Twice removed, so that nobody has to wait for it; where there
/// is no desktop nothing happens.
void openBrowser(const std::string& address) {
    const pid_t child = fork();
    if (child == 0) {
        if (fork() == 0) {
            const int nothing = open("/dev/null", O_RDWR);
            dup2(nothing, STDIN_FILENO);
            dup2(nothing, STDOUT_FILENO);
            dup2(nothing, STDERR_FILENO);
            setsid();
            execlp("xdg-open", "xdg-open", address.c_str(), nullptr);
        }
        _exit(0);
    }
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
}

int serve(const StudioOptions& options, std::ostream& out) {
    studio::Studio studio({options.place, options.port, {}, shapeConverter});
    const InterruptGuard guard;
    const std::string address = studio.address();
    out << address << std::endl;
    if (!options.noOpen) {
        openBrowser(address);
    }
    while (!InterruptGuard::requested()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    studio.end();
    return EXIT_DONE;
}

} // namespace

int studioCommand(const StudioOptions& options, std::ostream& out, std::ostream& err) {
    // A full disk or a limit on files is an error that is told, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return serve(options, out);
    } catch (const studio::Refusal& refusal) {
        err << sentence({commandLine, "", refusal.error, refusal.remedy}) << '\n';
    } catch (const std::system_error& error) {
        err << sentence({commandLine, "--port",
                         std::string("the studio cannot start: ") + error.what(),
                         "choose another port, or none"})
            << '\n';
    }
    return EXIT_BAD_INPUT;
}

#else

int studioCommand(const StudioOptions& /*options*/, std::ostream& /*out*/, std::ostream& err) {
    err << sentence({commandLine, "studio", "this program was built without the studio",
                     "run scripts/studio, which installs what its page is built with"})
        << '\n';
    return EXIT_BAD_INPUT;
}

#endif

} // namespace orbel::app
