// A page in a browser without a window, which is watched for all that it must not do.

import { after, before } from 'node:test';
import { createRequire } from 'node:module';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';

// Where scripts/view-tests.sh has put what the tests need: the modules, the page without data, room for what they make.
const kWork = process.env.LVP_VIEW_WORK;
const { chromium } = createRequire(join(kWork, 'modules/'))('playwright-core');

let browser;
before(async () => {
    // The sandbox refuses root.
    browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
});
after(() => browser.close());

export function workFile(name) {
    mkdirSync(join(kWork, 'pages'), { recursive: true });
    return join(kWork, 'pages', name);
}

/** The file of a page with these data. */
export function written(name, data) {
    const file = workFile(name + '.html');
    writeFileSync(file, readFileSync(join(kWork, 'page.html'), 'utf8').replace('@DATA@', () => data.toString()));
    return file;
}

const pages = new Map();

/** A page that is used for one test after the other: to make one takes longer than most tests. */
async function pageFor(options) {
    const key = JSON.stringify(options);
    if (pages.has(key)) return pages.get(key);
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, ...options });
    const watched = { page: await context.newPage(), url: '', complaints: [] };
    const { page } = watched;
    const complain = (text) => watched.complaints.push(text);
    page.on('console', (message) => complain(message.text()));
    page.on('pageerror', (error) => complain(error.message));
    page.on('dialog', (dialog) => {
        complain('dialog: ' + dialog.message());
        dialog.dismiss();
    });
    page.on('request', (request) => {
        if (request.url().split('#')[0] !== watched.url) complain('request: ' + request.url());
    });
    pages.set(key, watched);
    return watched;
}

/** Opens a page, in place of the one before. `complaints`: what it does that it must not: errors, requests, dialogs. */
export async function opened(file, { address = '', ...options } = {}) {
    const watched = await pageFor(options);
    watched.url = 'about:blank';
    await watched.page.goto('about:blank');
    watched.url = pathToFileURL(file).href;
    watched.complaints = [];
    await watched.page.goto(watched.url + address);
    return { page: watched.page, complaints: watched.complaints };
}

export async function shown(name, data, options) {
    return opened(written(name, data), options);
}

/** The names that the tree shows, from the first row in sight. */
export function rows(page) {
    return page.locator('#tree .label').allTextContents();
}

/** The row of this name. */
export function row(page, name) {
    return page.locator('#tree .line', { has: page.locator('.label', { hasText: new RegExp(`^${name}$`) }) }).first();
}

/** The name of the chosen item, as the panel has it. */
export function heading(page) {
    return page.locator('#panel h2').textContent();
}

/** The accessibility tree from the top down, as the browser hands it to a screen reader: role, name, properties. */
export async function accessible(page) {
    const session = await page.context().newCDPSession(page);
    const { nodes } = await session.send('Accessibility.getFullAXTree');
    const byId = new Map(nodes.map((node) => [node.nodeId, node]));
    const found = [];
    const walk = (node) => {
        if (!node) return;
        if (!node.ignored) {
            found.push({ role: node.role?.value, name: node.name?.value ?? '',
                ...Object.fromEntries((node.properties ?? []).map(({ name, value }) => [name, value.value])) });
        }
        for (const child of node.childIds ?? []) walk(byId.get(child));
    };
    walk(nodes.find((node) => !node.parentId));
    return found;
}
