# SPDX-License-Identifier: MIT
"""Copies of the tree, each with a build of its own, in which one mutant at a time is tried."""
import concurrent.futures
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import threading
import time

_LEFT_OUT = frozenset(('build', '.git'))
_KNOWN_PROPERTIES = frozenset((
    'COST', 'ENVIRONMENT', 'LABELS', 'PROCESSORS', 'RUN_SERIAL', 'SKIP_REGULAR_EXPRESSION',
    'SKIP_RETURN_CODE', 'TIMEOUT', 'WORKING_DIRECTORY'))
# The first time, ctest writes down the tests that there are.
_ONE_CTEST_AT_A_TIME = threading.Lock()
# What a mutant that loops may use.
_LIMITED = ('prlimit', f'--as={16 << 30}', f'--fsize={2 << 30}', '--core=0')


class Trouble(Exception):
    """Something is wrong with the tree or the machine, not with a mutant."""


class Test:
    def __init__(self, description):
        self.name = description['name'].split('  # ')[0]
        self.command = description['command']
        properties = {each['name']: each['value'] for each in description.get('properties', [])}
        unknown = properties.keys() - _KNOWN_PROPERTIES
        if unknown:
            raise Trouble(f'{self.name} has a property that is not known here: {sorted(unknown)}')
        self.folder = properties.get('WORKING_DIRECTORY')
        self.environment = dict(each.split('=', 1) for each in properties.get('ENVIRONMENT', []))
        self.seconds = 0.0
        self.limit = min(120.0, properties.get('TIMEOUT', 120.0))

    def passes(self):
        began = time.monotonic()
        try:
            with subprocess.Popen(
                    [*_LIMITED, *self.command], cwd=self.folder,
                    env={**os.environ, **self.environment}, stdin=subprocess.DEVNULL,
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                    start_new_session=True) as run:
                try:
                    return run.wait(self.limit) == 0
                except subprocess.TimeoutExpired:
                    return False
                finally:
                    _end_group(run.pid)
        finally:
            self.seconds = time.monotonic() - began


def _end_group(group):
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass


class Workshop:
    """A copy of the tree, its build, and its tests."""
    _targets = ()  # all

    def __init__(self, root, folder, threads):
        self.tree = folder / 'tree'
        self.build = folder / 'build'
        self.threads = threads
        self.tests = []
        self._reads = {}  # for each test program, the files that it is built from
        self._mutated = None
        _mirror(root, self.tree)

    def prepare(self):
        """Builds the copy, and runs all tests without a mutant."""
        self._configure()
        self._run(*self._ninja())
        self.tests, self._reads = self._tests_of(self.build)
        self._see_them_pass()

    def check(self):
        """Raises Trouble if a test fails without a mutant."""
        failed = self._first_failure(self.tests)
        if failed is not None:
            raise Trouble(f'{failed.name} fails without a mutant (in {self.build})')

    def try_mutant(self, mutant, source):
        """The mutant's outcome: ('refused', None), ('killed', by whom), or ('survived', None).
        REQUIRES: the tests that need only the module haven't killed it."""
        self._write(mutant, source)
        if not self._builds(*self._targets):
            return 'killed', 'a test that does not compile'
        path = self.tree / 'src' / mutant.path
        return self._outcome([test for test in self.tests
                              if path in self._reads.get(test.command[0], ())
                              or not self._needs_module_alone(test, self.build, self.tree)], mutant)

    def restore(self):
        """Restores the source, and rebuilds everything that had the mutant."""
        if self._mutated is not None:
            path, source = self._mutated
            path.write_text(source)
            self._mutated = None
            self._run(*self._ninja(*self._targets))

    def _write(self, mutant, source):
        """Writes the mutant, in place of the previous one."""
        if self._mutated is not None:
            self._mutated[0].write_text(self._mutated[1])
        path = self.tree / 'src' / mutant.path
        self._mutated = path, source
        path.write_text(mutant.apply(source))

    def _outcome(self, tests, mutant):
        failed = self._first_failure(_likely_first(tests, mutant.path))
        return ('survived', None) if failed is None else ('killed', failed.name)

    def _needs_module_alone(self, test, build, root):
        """Returns true iff no source of the modules or of the program is linked into the test."""
        return pathlib.Path(test.command[0]).parent == build / 'tests' and not any(
            path.suffix == '.cpp' and path.relative_to(root).parts[0] in ('src', 'program')
            for path in self._reads[test.command[0]] if path.is_relative_to(root))

    def _configure(self, *options):
        if not (self.build / 'build.ninja').exists():
            self._run('cmake', '-S', self.tree, '-B', self.build, '-G', 'Ninja',
                      '-D', 'CMAKE_BUILD_TYPE=', '-D', 'VEXTREL_AS_ONE_UNIT=OFF',
                      '-D', 'CMAKE_C_FLAGS=-O0 -w -DNDEBUG',
                      '-D', 'CMAKE_CXX_FLAGS=-O0 -w -DNDEBUG', *options)

    def _tests_of(self, build):
        """The tests, and for each of their programs, the files that it is built from."""
        with _ONE_CTEST_AT_A_TIME:
            described = self._run('ctest', '--test-dir', build, '--show-only=json-v1')
        tests = [Test(each) for each in json.loads(described)['tests']]
        return tests, _files_by_program(build, self._run('ninja', '-C', build, '-t', 'deps'))

    def _see_them_pass(self):
        self.check()
        for test in self.tests:
            test.limit = min(test.limit, max(20.0, 10 * test.seconds))

    def _first_failure(self, tests):
        """The first test that fails twice in a row, or None."""
        with concurrent.futures.ThreadPoolExecutor(self.threads) as pool:
            found = []

            def run(test):
                if not found and not test.passes() and \
                        (test.seconds >= test.limit or not test.passes()):
                    found.append(test)

            list(pool.map(run, tests))
        return min(found, key=lambda test: test.name) if found else None

    def _ninja(self, *targets):
        return ('ninja', '-C', self.build, '-j', str(self.threads), *targets)

    def _builds(self, *targets):
        return subprocess.run(self._ninja(*targets), stdin=subprocess.DEVNULL, check=False,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def _run(self, *command):
        done = subprocess.run(command, stdin=subprocess.DEVNULL, check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode != 0:
            raise Trouble(f'{command[0]} failed:\n' + '\n'.join(done.stdout.splitlines()[-40:]))
        return done.stdout


class OutsideWorkshop(Workshop):
    """A copy of which only the modules are built. Its tests are those of the Linux build that need
    nothing else."""
    # 'vextrel' alone is also the file that the program is built as.
    _targets = ('vextrel.cti', 'vextrel_extended.cti')

    def __init__(self, root, folder, threads):
        super().__init__(root, folder, threads)
        self._root = root

    def prepare(self):
        self._configure('-D', 'VEXTREL_TESTS=OFF')
        self._run(*self._ninja(*self._targets))
        build = self._root / 'build' / 'linux'
        tests, self._reads = self._tests_of(build)
        shutil.rmtree(self.build / 'tests', ignore_errors=True)
        shutil.copytree(build / 'tests', self.build / 'tests',
                        ignore=shutil.ignore_patterns('CMakeFiles', '*.cmake', '*.a'))
        for test in tests:
            if self._needs_module_alone(test, build, self._root):
                test.command[0] = str(self.build / 'tests' / pathlib.Path(test.command[0]).name)
                test.folder = str(self.build / 'tests')
                self.tests.append(test)
        self._see_them_pass()

    def try_mutant(self, mutant, source):
        self._write(mutant, source)
        if not self._builds(*self._targets):
            return 'refused', None
        return self._outcome(self.tests, mutant)


def _likely_first(tests, path):
    """Sorts the tests: same folder first, then sessions, then fast ones. Changes no result."""
    folder = pathlib.PurePath(path).parts[0]
    return sorted(tests, key=lambda test: (f'/{folder}_' not in test.command[0],
                                           '/session_' not in test.command[0],
                                           test.seconds > 0.3, test.name))


def _mirror(root, copy):
    """Makes the copy equal to the tree. Files that are equal already keep their dates."""
    wanted = set()
    for folder, folders, files in os.walk(root):
        folders[:] = [each for each in folders if each not in _LEFT_OUT]
        for name in files:
            source = pathlib.Path(folder) / name
            target = copy / source.relative_to(root)
            wanted.add(target)
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or target.read_bytes() != source.read_bytes():
                shutil.copy(source, target)
    for target in copy.rglob('*'):
        if target.is_file() and target not in wanted:
            target.unlink()


def _files_by_program(build, dependencies):
    """For each test program, all files it is compiled and linked from, taken from Ninja's files."""
    reads, current = {}, None
    for line in dependencies.splitlines():
        if line.startswith('    ') and current is not None:
            reads[current].add(build / line.strip())
        elif ': #deps' in line:
            current = line.split(':')[0]
            reads[current] = set()
    inputs = {}
    for line in (build / 'build.ninja').read_text().splitlines():
        match = re.fullmatch(r'build (\S+)(?: \|[^:]*)?: (?:C|CXX)_\S+ ([^|]*)(?:\|([^|].*?))?(?:\|\|.*)?',
                             line)
        if match:
            inputs[match.group(1)] = (match.group(2) + ' ' + (match.group(3) or '')).split()

    def files(target):
        found = set(reads.get(target, ()))
        for each in inputs.get(target, ()):
            found |= files(each) if each in inputs else {build / each}
        return found

    return {str(build / target): files(target) for target in inputs if '.o' not in target}
