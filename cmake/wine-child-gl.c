/* Lets OpenGL in child windows be seen under Debian's Wine 8.0.
 *
 * A patch of the Debian package against a compiler's warning (warnings/uninitialized-variables.patch,
 * X11DRV_GetDC) loses the drawable of every child window: what is drawn by GDI goes another way, but
 * a GL picture is copied to drawable 0 and never appears. Preloaded, this function stands before
 * Wine's own and puts back the X window of the top-level window. It changes nothing where the
 * drawable is not lost. wine-run.sh builds and preloads it. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stddef.h>

#define WINE_ABI __attribute__((ms_abi))

enum { ESCAPE_TO_DRIVER = 6789, SET_DRAWABLE = 0, ANCESTOR_ROOT = 2 };

struct set_drawable
{
    int code;
    unsigned long drawable;
};

typedef int(WINE_ABI* ext_escape_fn)(void*, void*, int, int, int, const char*, int, char*);
typedef void*(WINE_ABI* window_from_dc_fn)(void*);
typedef void*(WINE_ABI* get_ancestor_fn)(void*, unsigned);
typedef void*(WINE_ABI* get_prop_fn)(void*, const unsigned short*);

static void* find(const char* name)
{
    static void* library;
    if (!library)
        library = dlopen("win32u.so", RTLD_LAZY | RTLD_NOLOAD);
    return library ? dlsym(library, name) : NULL;
}

static unsigned long top_level_x_window(void* hdc)
{
    static const unsigned short property[] = u"__wine_x11_whole_window";
    const window_from_dc_fn window_from_dc = (window_from_dc_fn)find("NtUserWindowFromDC");
    const get_ancestor_fn get_ancestor = (get_ancestor_fn)find("NtUserGetAncestor");
    const get_prop_fn get_prop = (get_prop_fn)find("NtUserGetProp");
    void* const window = window_from_dc ? window_from_dc(hdc) : NULL;
    if (!window || !get_ancestor || !get_prop)
        return 0;
    return (unsigned long)get_prop(get_ancestor(window, ANCESTOR_ROOT), property);
}

int WINE_ABI NtGdiExtEscape(void* hdc, void* driver, int driver_id, int escape, int input_size,
                            const char* input, int output_size, char* output)
{
    const ext_escape_fn next = (ext_escape_fn)find("NtGdiExtEscape");
    if (escape == ESCAPE_TO_DRIVER && input_size >= (int)sizeof(struct set_drawable)) {
        struct set_drawable* const request = (struct set_drawable*)input;
        if (request->code == SET_DRAWABLE && request->drawable == 0)
            request->drawable = top_level_x_window(hdc);
    }
    return next ? next(hdc, driver, driver_id, escape, input_size, input, output_size, output) : 0;
}
