"""The files of a folder as macros of the installer, which so removes just those that it installed: installer_files.py FOLDER"""

import sys
from pathlib import Path, PureWindowsPath


def in_installed(path):
    return str(PureWindowsPath("$INSTDIR") / path)


def main():
    folder = Path(sys.argv[1]).resolve()
    files = sorted(path.relative_to(folder) for path in folder.rglob("*") if path.is_file())
    folders = sorted({parent for path in files for parent in path.parents})
    print("!macro INSTALL_FILES")
    for parent in folders:
        print(f'SetOutPath "{in_installed(parent)}"')
        for path in files:
            if path.parent == parent:
                print(f'File "{folder / path}"')
    print("!macroend\n!macro REMOVE_FILES")
    for path in files:
        print(f'Delete "{in_installed(path)}"')
    for parent in reversed(folders):
        print(f'RMDir "{in_installed(parent)}"')
    print("!macroend")


main()
